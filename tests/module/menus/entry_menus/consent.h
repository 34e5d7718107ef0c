#pragma once

#include <windows.h>
#include <objidl.h>

#include <functional>
#include <string>

#include "ovufc/noncopyable.h"
#include "testkit/imports/import_patch.h"

namespace ov::test {

/// The administrator prompt, answered in place of the user: Wine has no elevation moniker, so the module's
/// CoGetObject is replaced through its import table. One instance at a time.
class consent : private noncopyable {
  public:
    explicit consent(HMODULE module);
    ~consent();

    /// What the prompt returns; with S_OK also the object that proves the consent.
    HRESULT answer = S_OK;
    /// Called when the prompt would be on the screen.
    std::function<void()> while_asked;
    /// Called when the last reference to the proof is released.
    std::function<void()> when_released;

    [[nodiscard]] int asked() const noexcept { return asked_; }
    /// References to the proof that are still held.
    [[nodiscard]] ULONG references() const noexcept { return proof_.references; }

  private:
    /// Nothing but IUnknown: any other call on it ends the process.
    class proof final : public IUnknown {
      public:
        STDMETHODIMP
        QueryInterface(REFIID riid, void** ppv) noexcept override;
        STDMETHODIMP_(ULONG) AddRef() noexcept override;
        STDMETHODIMP_(ULONG) Release() noexcept override;
        ULONG references = 0;
        const consent* owner = nullptr;
    };

    static HRESULT WINAPI answer_prompt(LPCWSTR name, BIND_OPTS* options, REFIID riid, void** ppv);

    int asked_ = 0;
    proof proof_;
    import_patch<decltype(CoGetObject)> patch_;
};

}  // namespace ov::test
