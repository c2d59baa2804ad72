// Test programs that register a toolkit leave the machine's registry alone, and each other: what they see of it is a
// key of their own. Off Windows the whole registry of a test program is. The key cannot be volatile: what registers
// makes lasting keys, and those are refused below a volatile one.

#include <kelcore/platform.h>

#include <string>

namespace {

class PrivateMachineKey {
public:
    PrivateMachineKey() {
        RegCreateKeyExA(HKEY_CURRENT_USER, m_name.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                        &m_key, nullptr);
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, m_key);
    }
    PrivateMachineKey(const PrivateMachineKey&) = delete;
    PrivateMachineKey& operator=(const PrivateMachineKey&) = delete;
    ~PrivateMachineKey() {
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        RegCloseKey(m_key);
        RegDeleteTreeA(HKEY_CURRENT_USER, m_name.c_str());
    }

private:
    const std::string m_name = "Software\\KelCore test " + std::to_string(GetCurrentProcessId());
    HKEY m_key = nullptr;
};

const PrivateMachineKey g_key;

} // namespace
