// Handles for items, in chunks of 1,024 that are made when they are needed.
#include "shell/log_viewer/item_handles.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace zelt::test
