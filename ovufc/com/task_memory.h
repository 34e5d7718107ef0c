#pragma once

#include <windows.h>
#include <objbase.h>
#include <shtypes.h>

#include <memory>

namespace ov::com {

struct task_memory_deleter {
    void operator()(void* memory) const noexcept { CoTaskMemFree(memory); }
};

/// Owner of a block of the task allocator, which is how the shell hands out texts and ID lists.
template <class T>
using unique_task_memory = std::unique_ptr<T, task_memory_deleter>;

using unique_task_text = unique_task_memory<wchar_t>;
using unique_absolute_id_list = unique_task_memory<ITEMIDLIST_ABSOLUTE>;
using unique_child_id = unique_task_memory<ITEMID_CHILD>;

}  // namespace ov::com
