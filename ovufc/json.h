#pragma once

/// The JSON library, compiled into the namespace `ov`: include this header, never the library's own.
///
/// The namespace keeps our copy apart from one that another extension brings into the same host process.
namespace ov {}
/// Some of the library's own lines name it in full whatever namespace it is given.
namespace nlohmann = ov;
#define NLOHMANN_JSON_NAMESPACE ov
#define NLOHMANN_JSON_NAMESPACE_BEGIN namespace ov {
#define NLOHMANN_JSON_NAMESPACE_END }
#include <nlohmann/json.hpp>
