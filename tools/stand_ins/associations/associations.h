#pragma once

#include <windows.h>
#include <shellapi.h>

namespace ov::stand_ins {

/// AssocCreateForClasses, which Wine lacks: a call to it would end the process.
///
/// The object answers IQueryAssociations over the given classes, searched in their order; a class that is not
/// registered is left out. Of the texts it gives those that stand in the class keys: command, executable,
/// type name, default icon, shell extension, tips and content type; of the keys the class key and the one
/// that holds the verbs. Anything else, and a text that no class has, is ERROR_NO_ASSOCIATION.
/// Documented under "AssocCreateForClasses function (shellapi.h)" and "IQueryAssociations::GetString".
STDAPI create_associations(const ASSOCIATIONELEMENT* classes, ULONG count, REFIID riid, void** result);

}  // namespace ov::stand_ins
