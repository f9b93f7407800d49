// The framework's hash maps: CMapStringToString, CMapStringToPtr,
// CMapPtrToPtr, CMapWordToPtr and CMapStringToOb.
//
// Iteration with GetStartPosition / GetNextAssoc visits the entries in the
// order they were first inserted. That order is stable: it does not depend
// on the hash table's size or on the platform, so a file written from a map
// comes out the same every time.
//
//   CMapStringToString map;
//   map.SetAt("Key", "Value");
//   POSITION pos = map.GetStartPosition();
//   while (pos) {
//       CString key, value;
//       map.GetNextAssoc(pos, key, value);
//   }
//
// The entry just delivered by GetNextAssoc may be removed during the walk.
#pragma once

#include "platform/framework/cobject.h"
#include "platform/framework/cstring.h"
#include "platform/framework/wintypes.h"

#include <string_view>
#include <unordered_map>

namespace vx {

// Hash and equality that look up CString keys by any text without building
// a CString first.
struct TextKeyHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view s) const noexcept { return std::hash<std::string_view>{}(s); }
    std::size_t operator()(const CString& s) const noexcept { return (*this)(s.View()); }
    std::size_t operator()(const char* s) const noexcept { return (*this)(std::string_view(s ? s : "")); }
};
struct TextKeyEqual {
    using is_transparent = void;
    static std::string_view V(std::string_view s) { return s; }
    static std::string_view V(const CString& s) { return s.View(); }
    static std::string_view V(const char* s) { return s ? s : ""; }
    template <class A, class B>
    bool operator()(const A& a, const B& b) const noexcept { return V(a) == V(b); }
};

template <class KEY>
struct MapKeyTraits {
    using Hash = std::hash<KEY>;
    using Equal = std::equal_to<KEY>;
    using Arg = KEY;
};
template <>
struct MapKeyTraits<CString> {
    using Hash = TextKeyHash;
    using Equal = TextKeyEqual;
    using Arg = const char*;
};

// An insertion-ordered hash map with the framework's interface.
template <class KEY, class VALUE, class ARG_VALUE = const VALUE&>
class OrderedMap : public CObject {
    struct Link;
    using Table = std::unordered_map<KEY, Link, typename MapKeyTraits<KEY>::Hash, typename MapKeyTraits<KEY>::Equal>;
    using Node = typename Table::value_type;
    struct Link {
        VALUE value{};
        Node* prev = nullptr;
        Node* next = nullptr;
    };

public:
    using ArgKey = typename MapKeyTraits<KEY>::Arg;

    // The block size of the original allocator has no meaning here.
    explicit OrderedMap(int blockSize = 10) { (void)blockSize; }
    OrderedMap(const OrderedMap& other) : CObject() { CopyFrom(other); }
    OrderedMap& operator=(const OrderedMap& other)
    {
        if (this != &other) {
            RemoveAll();
            CopyFrom(other);
        }
        return *this;
    }
    ~OrderedMap() override = default;

    int GetCount() const { return static_cast<int>(m_table.size()); }
    int GetSize() const { return GetCount(); }
    bool IsEmpty() const { return m_table.empty(); }

    bool Lookup(ArgKey key, VALUE& value) const
    {
        auto it = m_table.find(key);
        if (it == m_table.end())
            return false;
        value = it->second.value;
        return true;
    }

    // The value of `key`, inserted as a default value at the end of the
    // order if it is new.
    VALUE& operator[](ArgKey key)
    {
        // One hash per call: the key is built once and tried in place.
        auto [it, inserted] = m_table.try_emplace(KEY(key));
        if (inserted) {
            Node* node = &*it;
            node->second.prev = m_tail;
            if (m_tail)
                m_tail->second.next = node;
            else
                m_head = node;
            m_tail = node;
        }
        return it->second.value;
    }

    void SetAt(ArgKey key, ARG_VALUE value) { (*this)[key] = value; }

    bool RemoveKey(ArgKey key)
    {
        auto it = m_table.find(key);
        if (it == m_table.end())
            return false;
        Node* node = &*it;
        Link& link = node->second;
        (link.prev ? link.prev->second.next : m_head) = link.next;
        (link.next ? link.next->second.prev : m_tail) = link.prev;
        m_table.erase(it);
        return true;
    }

    void RemoveAll()
    {
        m_table.clear();
        m_head = m_tail = nullptr;
    }

    POSITION GetStartPosition() const { return reinterpret_cast<POSITION>(m_head); }

    // Delivers the entry at `pos` and moves `pos` to the next one, or to
    // null after the last.
    void GetNextAssoc(POSITION& pos, KEY& key, VALUE& value) const
    {
        const Node* node = reinterpret_cast<const Node*>(pos);
        key = node->first;
        value = node->second.value;
        pos = reinterpret_cast<POSITION>(node->second.next);
    }

    void InitHashTable(UINT size, bool = true) { m_table.reserve(size); }
    UINT GetHashTableSize() const { return static_cast<UINT>(m_table.bucket_count()); }

private:
    void CopyFrom(const OrderedMap& other)
    {
        for (const Node* n = other.m_head; n; n = n->second.next)
            (*this)[ArgFrom(n->first)] = n->second.value;
    }
    static ArgKey ArgFrom(const KEY& key)
    {
        if constexpr (std::is_same_v<KEY, CString>)
            return key.GetString();
        else
            return key;
    }

    Table m_table;
    Node* m_head = nullptr;
    Node* m_tail = nullptr;
};

} // namespace vx

class CMapStringToString : public vx::OrderedMap<CString, CString, const char*> {
public:
    using OrderedMap::OrderedMap;
};
class CMapStringToPtr : public vx::OrderedMap<CString, void*, void*> {
public:
    using OrderedMap::OrderedMap;
};
class CMapStringToOb : public vx::OrderedMap<CString, CObject*, CObject*> {
public:
    using OrderedMap::OrderedMap;
};
class CMapPtrToPtr : public vx::OrderedMap<void*, void*, void*> {
public:
    using OrderedMap::OrderedMap;
};
class CMapWordToPtr : public vx::OrderedMap<WORD, void*, void*> {
public:
    using OrderedMap::OrderedMap;
};
