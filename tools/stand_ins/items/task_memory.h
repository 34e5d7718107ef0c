#pragma once

#include <windows.h>
#include <objbase.h>
#include <shtypes.h>

#include <memory>

namespace ov::stand_ins {

struct task_memory_closer {
    void operator()(void* memory) const noexcept { CoTaskMemFree(memory); }
};

/// Task-allocator memory of a shell call: item id lists and texts.
template <class T>
using unique_task = std::unique_ptr<T, task_memory_closer>;

/// An absolute item id list that this scope owns.
using unique_absolute_list = unique_task<ITEMIDLIST_ABSOLUTE>;
/// A child item id list that this scope owns.
using unique_child_list = unique_task<ITEMID_CHILD>;

}  // namespace ov::stand_ins
