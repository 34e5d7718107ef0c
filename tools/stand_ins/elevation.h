#pragma once

#include <windows.h>
#include <objbase.h>

namespace ov::stand_ins {

/// What the supplied elevation prompt answers.
enum class consent { given, declined };

/// Sets the answer for this process; consent is given unless said otherwise. Not synchronised: set it before
/// a command runs.
void set_elevation_answer(consent answer) noexcept;

/// Is called with every consent that was given or declined in place of the system, so that the program can
/// say so. Null for nobody.
void set_elevation_listener(void (*listener)(consent answer)) noexcept;

/// CoGetObject for systems that know no elevation moniker (Wine answers 0x800401EA).
///
/// "Elevation:Administrator!new:{class id}" gives the class's ordinary object, created in this process, when
/// consent is given, and HRESULT_FROM_WIN32(ERROR_CANCELLED) when it is declined, as the system's prompt
/// does. Any other name goes to the system. Documented under "The COM Elevation Moniker".
STDAPI get_object(PCWSTR name, BIND_OPTS* options, REFIID riid, void** result);

}  // namespace ov::stand_ins
