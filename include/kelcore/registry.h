#pragma once

/// @file
/// The registry: the shared key with its typed values, and the registration of COM classes.

#include <kelcore/export.h>
#include <kelcore/platform.h>
#include <kelcore/widestring.h>

#include <string>
#include <vector>

/// A key of the system's registry that is held open. Copies share the key, and the last of them closes it.
///
/// Names, texts and data go through the narrow calls of the system, converted by StdW2A and StdA2W: a NUL unit ends
/// them. An empty value name means the key's default value. Results are the system's error codes, 0 for success;
/// nothing is thrown but std::bad_alloc, which leaves no key open. A RegistryKey without a key is harmless: its
/// operations answer what the system says about a null handle. One RegistryKey, with its copies, belongs to one thread
/// at a time.
/// @code
/// RegistryKey settings =
///     RegistryKey(HKEY_CURRENT_USER).CreateSubkey(u"Software\\Maker\\Program"_w, 0, KEY_ALL_ACCESS, nullptr);
/// settings.SetInteger(u"Width"_w, 640);
/// int width = 320; // what an absent value leaves
/// settings.GetInteger(u"Width"_w, width);
/// @endcode
///
/// What the typed members store and accept:
///
/// | members    | registry type | data                                                           |
/// |------------|---------------|----------------------------------------------------------------|
/// | `String`   | REG_SZ        | the text and its terminator                                    |
/// | `Integer`  | REG_DWORD     | 4 bytes, the lowest first                                      |
/// | `Boolean`  | REG_DWORD     | 1 or 0; every other number reads as false                      |
/// | `Int64`    | REG_SZ        | the decimal text                                               |
/// | `Float`    | REG_SZ        | the text in fixed notation, with six decimals ("%lf")          |
/// | `Binary`   | REG_BINARY    | the bytes                                                      |
///
/// Reading a value makes two queries (`RegQueryValueExA`): the first tells its type and size, the second fetches it. A
/// value of another type, or without data, is read with success and leaves the target as it was, like one that cannot
/// be found. What the second query answers is not looked at, so a value that is changed between the two is read as far
/// as its old size goes, and what then did not arrive reads as zero bytes.
class KELCORE_API RegistryKey {
public:
    /// No key.
    RegistryKey();
    /// Takes @p key over and closes it in the end (`RegCloseKey`), predefined keys too, which the system accepts.
    /// @param key may be null.
    /// @throws std::bad_alloc; @p key is closed then.
    RegistryKey(HKEY key);
    /// Holds the key of @p other together with it.
    RegistryKey(const RegistryKey& other);
    /// Lets go of the key held so far and holds that of @p other together with it.
    const RegistryKey& operator=(const RegistryKey& other);
    /// Lets go of the key. The caller's last error stays.
    virtual ~RegistryKey();

    /// Whether there is a key.
    bool IsValid() const;
    /// Lets go of the key; this object has none afterwards. Its copies keep the key open.
    void Close();
    /// Whether both are copies of one another. Two that opened the same key separately are not.
    bool operator==(const RegistryKey& other) const;

    /// Holds a root key of another computer from now on (`RegConnectRegistryA`).
    /// @param machine empty for this computer.
    /// @param root a predefined key.
    /// @return 0; if the system refuses, its code, and the key held stays.
    long ConnectRegistry(const WideString& machine, HKEY root);
    /// Opens the key @p name below this one, and makes it and those on the way if they are missing (`RegCreateKeyExA`).
    /// @param options REG_OPTION_NON_VOLATILE or REG_OPTION_VOLATILE.
    /// @param access KEY_READ, KEY_WRITE …
    /// @param disposition null, or receives REG_CREATED_NEW_KEY or REG_OPENED_EXISTING_KEY; not written on failure.
    /// @return one without a key if the system refuses.
    RegistryKey CreateSubkey(const WideString& name, unsigned long options, unsigned long access,
                             unsigned long* disposition);
    /// Opens the key @p name below this one (`RegOpenKeyExA`).
    /// @return one without a key if the system refuses, because there is no such key for instance.
    RegistryKey OpenSubkey(const WideString& name, unsigned long access);
    /// Deletes the key @p name below this one (`RegDeleteKeyA`), which must have no subkeys.
    long DeleteSubkey(const WideString& name);
    /// Sets the default value of the key @p subkey below this one, which is made if it is missing, to a text
    /// (`RegSetValueA`). An empty @p subkey means this key.
    long SetSubkey(const WideString& subkey, const WideString& value);
    /// Has the system write the key to the disk (`RegFlushKey`).
    long Flush();
    /// Deletes a value (`RegDeleteValueA`).
    long DeleteValue(const WideString& name);
    /// Appends the names of the keys right below this one (`RegQueryInfoKeyA`, `RegEnumKeyExA`).
    /// @return the code of the first call that fails; the names found before it are in @p names then.
    long GetSubkeyNames(std::vector<WideString>& names) const;

    /// @name Values by type
    /// Getters leave their target as it was unless there is a value to put into it: see the class.
    /// @return 0, or the code of `RegQueryValueExA` (ERROR_FILE_NOT_FOUND for a missing value), `RegSetValueExA`.
    /// @{
    long GetString(const WideString& name, WideString& value);
    long SetString(const WideString& name, const WideString& value);
    /// A number stored in less than 4 bytes has zeros above them.
    long GetInteger(const WideString& name, unsigned long& value);
    long GetInteger(const WideString& name, int& value);
    long GetInteger(const WideString& name, unsigned int& value);
    long GetInteger(const WideString& name, long& value);
    /// Takes the low 16 bits.
    long GetInteger(const WideString& name, short& value);
    /// Takes the low 16 bits.
    long GetInteger(const WideString& name, unsigned short& value);
    /// Stores the low 32 bits.
    long SetInteger(const WideString& name, unsigned long value);
    long GetBoolean(const WideString& name, bool& value);
    long SetBoolean(const WideString& name, bool value);
    /// Takes the number at the beginning of the text, 0 if there is none (`_atoi64`).
    long GetInt64(const WideString& name, __int64& value);
    long SetInt64(const WideString& name, __int64 value);
    /// Takes the number at the beginning of the text (`strtod`; '.' is a decimal point under every locale): 0 if there
    /// is none, and 0 as well if GetString succeeds without a text, as for a value of another type. Only an error
    /// leaves @p value as it was.
    long GetFloat(const WideString& name, double& value);
    long SetFloat(const WideString& name, double value);
    long GetBinary(const WideString& name, NarrowString& data);
    long SetBinary(const WideString& name, const unsigned char* bytes, unsigned int count);
    long SetBinary(const WideString& name, const NarrowString& data);
    /// @}

    /// @name All values of a type
    /// Append the name and the data of every value of the type, in the order in which the system lists them
    /// (`RegQueryInfoKeyA`, `RegEnumValueA`).
    /// @return the code of the first call that fails; what was found before it is appended then.
    /// @{
    long GetAllStrings(std::vector<WideString>& names, std::vector<WideString>& values);
    long GetAllIntegers(std::vector<WideString>& names, std::vector<unsigned long>& values);
    long GetAllBinaries(std::vector<WideString>& names, std::vector<NarrowString>& datas);
    /// @}

    /// Deletes the values of this key one by one, and stops at the first that the system cannot delete or list. Names
    /// of 520 bytes or more cannot be listed here.
    void DeleteAllValues();
    /// Deletes every value whose name matches @p pattern (NameMatch).
    /// @return the code of the first call that fails; what was deleted before it stays deleted.
    long DeleteMultipleValues(const WideString& pattern);
    /// Whether @p name matches @p pattern, in which '?' stands for any unit and '*' for any rest that has at least one;
    /// what follows a '*' is not looked at. Every other unit stands for itself, with its case.
    static bool NameMatch(const WideString& name, const WideString& pattern);

protected:
    /// Appends the name and the bytes of every value of registry type @p type, in step. Texts (REG_SZ) come without
    /// NUL bytes at their end.
    /// @return the code of the first call that fails; what was found before it is appended then.
    long GetTypedValues(unsigned long type, std::vector<WideString>& names, std::vector<NarrowString>& datas);

private:
    struct SharedKey;

    HKEY Handle() const;
    static void Release(SharedKey* shared);

    SharedKey* m_pShared;
};

/// Announces in-process COM servers: the entries of a class below "Software\\Classes\\CLSID" of HKEY_LOCAL_MACHINE, in
/// a key named after its identifier in braces. Static members only; every failure is just `false`.
class KELCORE_API RegistryHelper {
public:
    /// Makes the key of the class. @return whether it is there.
    static bool RegisterCLSID(const GUID& clsid);
    /// Deletes the key of the class. @return whether the system did; it refuses while there are keys below it, so call
    ///         UnregisterInprocServer32 first.
    static bool UnregisterCLSID(const GUID& clsid);
    /// Makes the key "InprocServer32" of the class, and its own if that is missing, with @p path as its default value.
    /// @return whether the value was written.
    static bool RegisterInprocServer32(const GUID& clsid, const WideString& path);
    /// Deletes the key "InprocServer32" of the class. @return whether the system did.
    static bool UnregisterInprocServer32(const GUID& clsid);
};
