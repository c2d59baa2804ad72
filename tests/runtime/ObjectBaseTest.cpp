#include <doctest/doctest.h>
#include <kelcore/runtime/objects.h>

#include <cstring>

namespace {

struct Tracked : virtual KelUnknown {
    explicit Tracked(bool& destroyed) : m_destroyed(destroyed) {}
    ~Tracked() override { m_destroyed = true; }
    bool& m_destroyed;
};

struct Data : DataObject {
    explicit Data(bool& destroyed) : m_destroyed(destroyed) {}
    ~Data() override { m_destroyed = true; }
    bool& m_destroyed;
};

const IID kUnknownInterface = {0x12345678, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};

// A call on a null pointer is outside the language, yet part of the member's contract.
#if defined(__clang__) || defined(__GNUC__)
__attribute__((no_sanitize("undefined")))
#endif
void DestroyThrough(KelUnknown* object) {
    object->Destroy();
}

} // namespace

TEST_CASE("a counted object lives until its last reference is released") {
    bool destroyed = false;
    auto* object = new Tracked(destroyed);
    CHECK(object->AddRef() == 2);
    void* out = object;
    CHECK(object->QueryInterface(IID_IUnknown, &out) == E_NOINTERFACE);
    CHECK(out == nullptr);
    CHECK(object->Release() == 1);
    CHECK_FALSE(destroyed);
    CHECK(object->Release() == 0);
    CHECK(destroyed);
}

TEST_CASE("Destroy ends an object whatever its count, and does nothing on null") {
    bool destroyed = false;
    auto* object = new Tracked(destroyed);
    object->AddRef();
    DestroyThrough(object);
    CHECK(destroyed);
    KelUnknown* volatile none = nullptr;
    DestroyThrough(none);
}

TEST_CASE("a data object answers for its three identifiers and counts each answer") {
    bool destroyed = false;
    auto* object = new Data(destroyed);
    void* out = nullptr;
    CHECK(object->QueryInterface(IID_IDataObject, &out) == S_OK);
    CHECK(out == static_cast<IDataObject*>(object));
    CHECK(object->QueryInterface(IID_IUnknown, &out) == S_OK);
    CHECK(out == static_cast<IDataObject*>(object));
    CHECK(object->QueryInterface(IID_KelDataObject, &out) == S_OK);
    CHECK(out == static_cast<DataObject*>(object));
    CHECK(object->QueryInterface(kUnknownInterface, &out) == E_NOINTERFACE);
    CHECK(out == nullptr);
    CHECK(object->Release() == 3);
    object->Release();
    object->Release();
    CHECK_FALSE(destroyed);
    CHECK(object->Release() == 0);
    CHECK(destroyed);

    const unsigned char bytes[] = {0x7D, 0xFC, 0xAD, 0x7C, 0xF1, 0xB1, 0x10, 0x40,
                                   0xBA, 0x9C, 0xC8, 0x79, 0xE1, 0x1A, 0xB6, 0xB1};
    CHECK(std::memcmp(&IID_KelDataObject, bytes, sizeof bytes) == 0);
}

TEST_CASE("a data object refuses every data call with its fixed code") {
    DataObject object;
    IDataObject& data = object;
    CHECK(data.GetData(nullptr, nullptr) == E_INVALIDARG);
    CHECK(data.GetDataHere(nullptr, nullptr) == E_INVALIDARG);
    CHECK(data.QueryGetData(nullptr) == E_INVALIDARG);
    CHECK(data.GetCanonicalFormatEtc(nullptr, nullptr) == E_INVALIDARG);
    CHECK(data.SetData(nullptr, nullptr, TRUE) == E_NOTIMPL);
    CHECK(data.DAdvise(nullptr, 0, nullptr, nullptr) == E_NOTIMPL);
    CHECK(data.DUnadvise(1) == OLE_E_ADVISENOTSUPPORTED);
    IEnumFORMATETC* formats = reinterpret_cast<IEnumFORMATETC*>(&object);
    CHECK(data.EnumFormatEtc(1, &formats) == E_NOTIMPL);
    CHECK(formats == nullptr);
    IEnumSTATDATA* connections = reinterpret_cast<IEnumSTATDATA*>(&object);
    CHECK(data.EnumDAdvise(&connections) == OLE_E_ADVISENOTSUPPORTED);
    CHECK(connections == nullptr);
}
