#include "registration/key_tree.h"

namespace zelt {

std::optional<KeyTree> ReadKeyTree(const RegistryRoot& root, const std::wstring& path)
{
    RegistryKey key;
    if (key.Open(root, path, KEY_READ) != ERROR_SUCCESS) return {};
    KeyTree tree;
    tree.values = key.Values();
    for (const std::wstring& name : key.SubkeyNames()) {
        if (auto subtree = ReadKeyTree({key.Get(), root.view}, name)) tree.subkeys.emplace(name, std::move(*subtree));
    }
    return tree;
}

LSTATUS WriteKeyTree(const RegistryRoot& root, const std::wstring& path, const KeyTree& tree)
{
    RegistryKey key;
    LSTATUS result = key.Create(root, path, KEY_READ | KEY_WRITE);
    for (const auto& [name, value] : tree.values) {
        if (result != ERROR_SUCCESS) return result;
        result = key.WriteBytes(name.c_str(), value.type, value.data.data(), value.data.size());
    }
    for (const auto& [name, subtree] : tree.subkeys) {
        if (result != ERROR_SUCCESS) return result;
        result = WriteKeyTree({key.Get(), root.view}, name, subtree);
    }
    return result;
}

}  // namespace zelt
