// The handles of items whose indices may be far apart.
#include "shell/log_viewer/item_handles.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace zelt::test {
namespace {

HTREEITEM Handle(std::uintptr_t number) { return reinterpret_cast<HTREEITEM>(number); }

TEST(ItemHandles, AreNullForItemsThatAreNotInTheTree)
{
    ItemHandles handles;
    EXPECT_EQ(nullptr, handles.Get(0));
    EXPECT_EQ(nullptr, handles.Get(1'000'000));
    handles.Set(0, Handle(1));
    for (const ItemIndex item : {1u, 1023u, 1024u, 2048u, 1'000'000u}) EXPECT_FALSE(handles.Has(item)) << item;
    handles.Set(5000, Handle(2));
    for (const ItemIndex item : {4999u, 5001u, 5119u, 5120u, 6144u, 7168u, 8192u})
        EXPECT_FALSE(handles.Has(item)) << item;
    EXPECT_EQ(Handle(1), handles.Get(0));
    EXPECT_EQ(Handle(2), handles.Get(5000));
    handles.Clear(5000);
    handles.Clear(9000);
    EXPECT_FALSE(handles.Has(5000));
    EXPECT_TRUE(handles.Has(0));
}

// Sets, replaces and clears the handles of items that are close together and of items that are far apart.
TEST(ItemHandles, AreThoseThatWereSetLast)
{
    ItemHandles handles;
    std::map<ItemIndex, HTREEITEM> expected;
    std::minstd_rand random(1);
    for (std::uintptr_t step = 1; step <= 40'000; ++step) {
        const auto number = static_cast<ItemIndex>(random());
        const ItemIndex item = number % 3 ? number % 5000 : number;
        if (number / 7 % 3) {
            handles.Set(item, Handle(step));
            expected[item] = Handle(step);
        } else {
            handles.Clear(item);
            expected.erase(item);
        }
    }
    std::vector<ItemIndex> items;
    for (const auto& [item, handle] : expected) {
        ASSERT_EQ(handle, handles.Get(item)) << item;
        items.push_back(item);
    }
    EXPECT_EQ(items, handles.Items());
    for (ItemIndex item = 0; item < 5000; ++item) ASSERT_EQ(expected.contains(item), handles.Has(item)) << item;
    handles.ClearAll();
    EXPECT_TRUE(handles.Items().empty());
    EXPECT_FALSE(handles.Has(items.front()));
    handles.Set(3, Handle(1));
    EXPECT_EQ(std::vector<ItemIndex>{3}, handles.Items());
}

}  // namespace
}  // namespace zelt::test
