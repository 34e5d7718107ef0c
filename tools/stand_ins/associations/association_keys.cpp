#include "tools/stand_ins/associations/association_keys.h"

#include <shlwapi.h>
#include <wrl/client.h>

#include "tools/stand_ins/items/interface_ids.h"

namespace ov::stand_ins {

using Microsoft::WRL::ComPtr;

unique_registry_key duplicate_key(HKEY key) noexcept {
    return open_key_to_read(key, nullptr);
}

std::vector<unique_registry_key> class_keys_of(IUnknown* associations) {
    std::vector<unique_registry_key> keys;
    ComPtr<IAssociationKeys> own;
    if (SUCCEEDED(associations->QueryInterface(IID_PPV_ARGS(own.GetAddressOf())))) {
        for (const unique_registry_key& key : own->class_keys()) {
            keys.push_back(duplicate_key(key.get()));
        }
        return keys;
    }
    ComPtr<IQueryAssociations> foreign;
    unique_registry_key key;
    if (SUCCEEDED(associations->QueryInterface(IID_PPV_ARGS(foreign.GetAddressOf()))) &&
        SUCCEEDED(foreign->GetKey(ASSOCF_NONE, ASSOCKEY_CLASS, nullptr, key.put()))) {
        keys.push_back(std::move(key));
    }
    return keys;
}

}  // namespace ov::stand_ins
