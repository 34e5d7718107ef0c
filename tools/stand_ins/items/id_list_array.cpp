#include "ovufc/noncopyable.h"
#include "tools/stand_ins/items/id_list_array.h"

#include <shlobj.h>

#include <cstddef>
#include <cstring>
#include <new>

namespace ov::stand_ins {

namespace {

/// Reads id lists inside a block whose bounds are known; a list that runs out of it is refused.
class block_reader {
  public:
    block_reader(const std::byte* data, std::size_t size_bytes) : data_(data), size_bytes_(size_bytes) {}

    [[nodiscard]] const CIDA* header() const {
        if (size_bytes_ < sizeof(CIDA)) {
            return nullptr;
        }
        const auto* cida = reinterpret_cast<const CIDA*>(data_);
        const std::size_t offsets = (size_bytes_ - sizeof(UINT)) / sizeof(UINT);
        return cida->cidl < offsets ? cida : nullptr;
    }

    [[nodiscard]] bool holds_list(std::size_t offset) const {
        while (offset + sizeof(USHORT) <= size_bytes_) {
            USHORT entry_bytes = 0;
            std::memcpy(&entry_bytes, data_ + offset, sizeof entry_bytes);
            if (entry_bytes == 0) {
                return true;
            }
            if (entry_bytes < sizeof(USHORT)) {
                return false;
            }
            offset += entry_bytes;
        }
        return false;
    }

    template <class List>
    [[nodiscard]] const List* list(std::size_t offset) const {
        return holds_list(offset) ? reinterpret_cast<const List*>(data_ + offset) : nullptr;
    }

  private:
    const std::byte* data_;
    std::size_t size_bytes_;
};

class medium_scope : private noncopyable {
  public:
    medium_scope() = default;
    ~medium_scope() { ReleaseStgMedium(&medium); }
    STGMEDIUM medium{};
};

HRESULT read_block(const block_reader& block, item_selection& read) {
    const CIDA* cida = block.header();
    if (cida == nullptr || cida->cidl == 0) {
        return E_INVALIDARG;
    }
    const auto* folder = block.list<ITEMIDLIST_ABSOLUTE>(cida->aoffset[0]);
    if (folder == nullptr) {
        return E_INVALIDARG;
    }
    item_selection found;
    found.folder.reset(ILCloneFull(folder));
    for (UINT i = 1; i <= cida->cidl; ++i) {
        const auto* item = block.list<ITEMID_CHILD>(cida->aoffset[i]);
        if (item == nullptr) {
            return E_INVALIDARG;
        }
        found.items.emplace_back(ILCloneChild(item));
    }
    read = std::move(found);
    return S_OK;
}

}  // namespace

std::vector<PCUITEMID_CHILD> item_selection::children() const {
    std::vector<PCUITEMID_CHILD> all;
    all.reserve(items.size());
    for (const com::unique_child_id& item : items) {
        all.push_back(item.get());
    }
    return all;
}

CLIPFORMAT id_list_array_format() noexcept {
    static const auto format = static_cast<CLIPFORMAT>(RegisterClipboardFormatW(CFSTR_SHELLIDLIST));
    return format;
}

unique_global make_id_list_array(PCIDLIST_ABSOLUTE folder, UINT count, PCUITEMID_CHILD_ARRAY items) noexcept {
    const std::size_t header_bytes = sizeof(UINT) * (std::size_t{count} + 2);
    std::size_t total_bytes = header_bytes + ILGetSize(folder);
    for (UINT i = 0; i < count; ++i) {
        total_bytes += ILGetSize(items[i]);
    }
    unique_global memory(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, total_bytes));
    if (!memory) {
        return memory;
    }
    const global_lock lock(memory.get());
    auto* block = static_cast<std::byte*>(lock.data());
    auto* cida = reinterpret_cast<CIDA*>(block);
    cida->cidl = count;
    std::size_t offset = header_bytes;
    const auto put = [&](UINT slot, PCUIDLIST_RELATIVE list) {
        cida->aoffset[slot] = static_cast<UINT>(offset);
        const std::size_t size_bytes = ILGetSize(list);
        std::memcpy(block + offset, list, size_bytes);
        offset += size_bytes;
    };
    put(0, folder);
    for (UINT i = 0; i < count; ++i) {
        put(i + 1, items[i]);
    }
    return memory;
}

HRESULT read_selection(IDataObject* object, item_selection& read) {
    FORMATETC format{id_list_array_format(), nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    medium_scope scope;
    const HRESULT result = object->GetData(&format, &scope.medium);
    if (FAILED(result)) {
        return result;
    }
    const global_lock lock(scope.medium.hGlobal);
    if (lock.data() == nullptr) {
        return E_INVALIDARG;
    }
    return read_block({static_cast<const std::byte*>(lock.data()), GlobalSize(scope.medium.hGlobal)}, read);
}

item_selection copy_selection(PCIDLIST_ABSOLUTE folder, UINT count, PCUITEMID_CHILD_ARRAY items) {
    item_selection copy;
    copy.folder.reset(ILCloneFull(folder));
    for (UINT i = 0; i < count; ++i) {
        copy.items.emplace_back(ILCloneChild(items[i]));
        if (copy.items.back() == nullptr) {
            throw std::bad_alloc();
        }
    }
    if (copy.folder == nullptr) {
        throw std::bad_alloc();
    }
    return copy;
}

}  // namespace ov::stand_ins
