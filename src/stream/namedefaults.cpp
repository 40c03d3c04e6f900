// Default values that hold for tokens of one name.
#include "stream/namedefaults.h"

#include <bit>
#include <cstring>
#include <new>
#include <stdexcept>

#include "internals.h"
#include "platform/numbertext.h"
#include "stream/sharedblock.h"

namespace platform = mlds::platform;

namespace {

// Reads the value of an entry, whose target field may be unknown.
void ReadValue(NameSpcDefVal& entry, CField* pTarget, const char* text) {
    entry.nValueType = 1;
    if (std::strchr(text, '.') != nullptr) {
        float value = 0;
        if (!platform::ScanFloat(text, value)) throw std::runtime_error("sscanf problem");
        entry.nValueType = 2;
        entry.nValue = std::bit_cast<std::int32_t>(value);
        return;
    }
    std::int32_t number = 0;  // what an empty text gives
    if (platform::ScanInt(text, number) != platform::Scan::noNumber) {
        entry.nValue = number;
    } else {
        entry.nValue = pTarget != nullptr ? pTarget->GetValueIndex(text) : -1;
    }
}

}  // namespace

void mlds::DropNameDefaults(NameSpcDefVal** ppEntries, int n) {
    if (ppEntries != nullptr && ShareCount(ppEntries) == 1) {
        for (int i = 0; i < n; ++i) delete ppEntries[i];
    }
    DropBlock(ppEntries);
}

void CField::SetDefaultValue(const char* const* list, int n) {
    constexpr int kMost = 0x7FFFFFFF / 3;
    if (m_ppNameDefaults != nullptr || m_pStream == nullptr) return;
    if (list == nullptr || n < 0 || n > kMost) return;
    for (int k = 0; k < n; ++k) {
        if (list[3 * k + 1] == nullptr || list[3 * k + 2] == nullptr) return;
    }
    // Null where an entry could not be made.
    m_ppNameDefaults = mlds::NewBlock<NameSpcDefVal*>(static_cast<std::size_t>(n));
    if (m_ppNameDefaults == nullptr) return;
    m_nNameDefaults = n;
    for (int k = 0; k < n; ++k) {
        NameSpcDefVal entry{};
        entry.nNameValueIndex = GetValueIndex(list[3 * k]);
        entry.nFieldIndex = m_pStream->GetFieldIndex(list[3 * k + 1]);
        ReadValue(entry, m_pStream->GetField(entry.nFieldIndex), list[3 * k + 2]);
        m_ppNameDefaults[k] = new (std::nothrow) NameSpcDefVal(entry);
    }
}
