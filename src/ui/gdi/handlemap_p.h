// Internal; do not include directly.
//
// The framework's FromHandle: one wrapper object per foreign handle, made on
// first request and kept, never owning the handle. Wrappers of handles that
// have gone are dropped now and then.
#pragma once

#include <cstddef>
#include <memory>
#include <unordered_map>

namespace vx {

template <class Wrapper, class Handle>
class HandleMap {
public:
    // `attach` stores the handle in a new wrapper; `alive` tells whether a
    // handle still exists; `detach` takes it out again before the wrapper goes.
    template <class Attach, class Alive, class Detach>
    Wrapper* Get(Handle handle, Attach attach, Alive alive, Detach detach)
    {
        if (!handle)
            return nullptr;
        auto it = m_map.find(handle);
        if (it != m_map.end())
            return it->second.get();
        if (m_map.size() >= m_sweepAt) {
            for (auto i = m_map.begin(); i != m_map.end();) {
                if (!alive(i->first)) {
                    detach(*i->second);
                    i = m_map.erase(i);
                } else {
                    ++i;
                }
            }
            m_sweepAt = std::max<std::size_t>(64, m_map.size() * 2);
        }
        auto wrapper = std::make_unique<Wrapper>();
        attach(*wrapper, handle);
        Wrapper* raw = wrapper.get();
        m_map.emplace(handle, std::move(wrapper));
        return raw;
    }

private:
    std::unordered_map<Handle, std::unique_ptr<Wrapper>> m_map;
    std::size_t m_sweepAt = 64;
};

// The wrapper of `handle` for a class with Attach and Detach; `alive` tells
// whether a handle still exists.
template <class Wrapper, class Handle>
Wrapper* WrapperOf(Handle handle, bool (*alive)(Handle))
{
    static auto* map = new HandleMap<Wrapper, Handle>; // wrappers never delete what they wrap
    return map->Get(
        handle, [](Wrapper& w, Handle h) { w.Attach(h); }, alive, [](Wrapper& w) { w.Detach(); });
}

} // namespace vx
