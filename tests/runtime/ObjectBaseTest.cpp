#include <doctest/doctest.h>
#include <kelcore/runtime/objects.h>

#include <cstring>

namespace {

// Tells when it ends.
template <class Base>
struct Tracked : Base {
    explicit Tracked(bool& destroyed) : m_destroyed(destroyed) {}
    ~Tracked() override { m_destroyed = true; }
    bool& m_destroyed;
};

struct Counted : virtual KelUnknown {};

// A call on a null pointer is outside the language, yet part of the member's contract.
#if defined(__clang__) || defined(__GNUC__)
__attribute__((no_sanitize("undefined")))
#endif
void DestroyThrough(KelUnknown* object) {
    object->Destroy();
}

} // namespace

TEST_CASE(
    "a counted object lives until its last reference is released, or until it is destroyed, which null survives") {
    bool released = false, destroyed = false;
    auto* object = new Tracked<Counted>(released);
    CHECK(object->AddRef() == 2);
    void* out = object;
    CHECK((object->QueryInterface(IID_IUnknown, &out) == E_NOINTERFACE && out == nullptr));
    CHECK((object->Release() == 1 && !released));
    CHECK((object->Release() == 0 && released));

    object = new Tracked<Counted>(destroyed);
    object->AddRef();
    DestroyThrough(object);
    CHECK(destroyed);
    KelUnknown* volatile none = nullptr;
    DestroyThrough(none);
}

TEST_CASE("a data object answers for its three identifiers and counts each answer") {
    bool destroyed = false;
    auto* object = new Tracked<DataObject>(destroyed);
    const auto answers = [&](const IID& identifier, const void* expected) {
        void* out = &destroyed;
        CHECK(object->QueryInterface(identifier, &out) == (expected ? S_OK : E_NOINTERFACE));
        CHECK(out == expected);
    };
    answers(IID_IDataObject, static_cast<IDataObject*>(object));
    answers(IID_IUnknown, static_cast<IDataObject*>(object));
    answers(IID_KelDataObject, static_cast<DataObject*>(object));
    answers(IID{0x12345678, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}}, nullptr);
    for (unsigned long left = 4; left-- > 0;) {
        CHECK_FALSE(destroyed);
        CHECK(object->Release() == left);
    }
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
    IEnumSTATDATA* connections = reinterpret_cast<IEnumSTATDATA*>(&object);
    CHECK(data.EnumDAdvise(&connections) == OLE_E_ADVISENOTSUPPORTED);
    CHECK((formats == nullptr && connections == nullptr));
}
