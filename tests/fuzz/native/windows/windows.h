// A double: the few names of Windows' headers that the readers of replies and documents need, for a machine
// that has no such headers. Its values are Windows' own.
#pragma once

#include <cstdint>

using HRESULT = std::int32_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using SFGAOF = std::uint32_t;

struct GUID {
    std::uint32_t data1;
    std::uint16_t data2;
    std::uint16_t data3;
    std::uint8_t data4[8];
};
using KNOWNFOLDERID = GUID;

inline constexpr HRESULT S_OK = 0;
inline constexpr auto E_UNEXPECTED = static_cast<HRESULT>(0x8000FFFF);

// Only that they differ counts here.
inline constexpr KNOWNFOLDERID FOLDERID_Documents{.data1 = 1};
inline constexpr KNOWNFOLDERID FOLDERID_Desktop{.data1 = 2};
inline constexpr KNOWNFOLDERID FOLDERID_Pictures{.data1 = 3};
inline constexpr KNOWNFOLDERID FOLDERID_Objects3D{.data1 = 4};
inline constexpr KNOWNFOLDERID FOLDERID_Contacts{.data1 = 5};
inline constexpr KNOWNFOLDERID FOLDERID_Music{.data1 = 6};
inline constexpr KNOWNFOLDERID FOLDERID_SavedGames{.data1 = 7};
inline constexpr KNOWNFOLDERID FOLDERID_Videos{.data1 = 8};
