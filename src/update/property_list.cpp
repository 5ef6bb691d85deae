#include "update/property_list.h"

#include <plist/plist.h>

#include <cstdlib>
#include <memory>
#include <type_traits>

#include "update/property_list_limits.h"

namespace orlix {
namespace {

struct FreeNode {
    void operator()(void* node) const { plist_free(node); }
};
struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};
using Root = std::unique_ptr<std::remove_pointer_t<plist_t>, FreeNode>;
using Iterator = std::unique_ptr<void, FreeMemory>;
using Text = std::unique_ptr<char, FreeMemory>;

QVariant toVariant(plist_t node);

QVariantMap toMap(plist_t dictionary) {
    QVariantMap map;
    plist_dict_iter created = nullptr;
    plist_dict_new_iter(dictionary, &created);
    const Iterator iterator(created);
    for (;;) {
        char* name = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(dictionary, iterator.get(), &name, &value);
        const Text key(name);
        if (value == nullptr) return map;
        map.insert(QString::fromUtf8(key.get()), toVariant(value));
    }
}

QVariantList toList(plist_t array) {
    QVariantList list;
    plist_array_iter created = nullptr;
    plist_array_new_iter(array, &created);
    const Iterator iterator(created);
    for (;;) {
        plist_t value = nullptr;
        plist_array_next_item(array, iterator.get(), &value);
        if (value == nullptr) return list;
        list.append(toVariant(value));
    }
}

QString toText(plist_t node) {
    char* text = nullptr;
    plist_get_string_val(node, &text);
    return QString::fromUtf8(Text(text).get());
}

QVariant toVariant(plist_t node) {
    switch (plist_get_node_type(node)) {
        case PLIST_STRING: return toText(node);
        case PLIST_ARRAY: return toList(node);
        case PLIST_DICT: return toMap(node);
        default: return {};
    }
}

// The library's C interface, as its C++ one (version 2.2) loses what stands in arrays.
Root parse(const QByteArray& bytes) {
    plist_t root = nullptr;
    const auto size = static_cast<std::uint32_t>(bytes.size());
    if (isBinaryPropertyList(bytes)) {
        plist_from_bin(bytes.constData(), size, &root);
    } else {
        plist_from_xml(bytes.constData(), size, &root);
    }
    return Root(root);
}

}  // namespace

std::optional<QVariantMap> readPropertyList(const QByteArray& bytes) {
    if (bytes.size() > largestPropertyList || !isHarmlessPropertyList(bytes)) return std::nullopt;
    const Root root = parse(bytes);
    if (!root || plist_get_node_type(root.get()) != PLIST_DICT) return std::nullopt;
    return toMap(root.get());
}

}  // namespace orlix
