#pragma once

#include "tests/support/Blocks.h"

#include <doctest/doctest.h>
#include <kelcore/imaging/toolkit.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <vector>

/// A client of the toolkit: its module, a sink, a control.
namespace kel::test {

namespace toolkit = kel::toolkit;
using Bytes = std::vector<BYTE>;

/// The module, loaded for a scope by its plain name.
class Module {
public:
    Module() : m_handle(LoadLibraryA(toolkit::kModuleName)) { REQUIRE(m_handle != nullptr); }
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;
    ~Module() { FreeLibrary(m_handle); }

    template <class Function>
    Function Entry(const char* name) const {
        const auto entry = reinterpret_cast<void*>(GetProcAddress(m_handle, name));
        REQUIRE(entry != nullptr);
        return reinterpret_cast<Function>(entry);
    }
    HMODULE Handle() const { return m_handle; }

private:
    const HMODULE m_handle;
};

/// Counts its references; any call of Invoke would be a fault.
struct Sink final : IDispatch {
    LONG references = 0;
    HRESULT answer = S_OK; ///< to QueryInterface

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        *object = answer == S_OK ? this : nullptr;
        references += answer == S_OK ? 1 : 0;
        return IsEqualIID(id, toolkit::kEventInterface) ? answer : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        std::abort();
    }
};

/// A connected control. The module is let go of at once: the control keeps itself loaded.
class Control {
public:
    Control() {
        const Module module;
        module.Entry<toolkit::ConnectEvents>(toolkit::kConnectEventsName)(&m_control, &m_cookie, &m_sink,
                                                                          &m_sink.references);
        REQUIRE(m_control != nullptr);
    }
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;
    ~Control() { m_control->Release(); }

    toolkit::IControl* Interface() const { return m_control; }
    DWORD Cookie() const { return m_cookie; }
    LONG SinkReferences() const { return m_sink.references; }

    /// Calls an operation.
    template <class... Arguments, class... Given>
    HRESULT operator()(toolkit::Operation<Arguments...> operation, Given... given) const {
        return operation(m_control, static_cast<Arguments>(given)...);
    }

    /// What an operation gives out.
    template <class Value>
    Value Get(toolkit::Operation<Value*> operation) const {
        Value value = {};
        CHECK(operation(m_control, &value) == S_OK);
        return value;
    }

    SHORT Load(const Bytes& file) const {
        CHECK((*this)(toolkit::LoadFromMemory, file.data(), file.size()) == S_OK);
        return Get(toolkit::GetLoadStatus);
    }

    /// The picture's packed bitmap; no bytes if there is none.
    Bytes Picture() const { return BytesOf<Bytes>(Get(toolkit::GetDibHandle)); }

    /// What saving the picture makes.
    Bytes Saved() const {
        CHECK((*this)(toolkit::SetSaveTarget, 1) == S_OK);
        CHECK((*this)(toolkit::SetSaveFormat, 10) == S_OK);
        CHECK((*this)(toolkit::Save) == S_OK);
        CHECK(Get(toolkit::GetLoadStatus) == toolkit::kLoaded);
        Bytes saved = BytesOf<Bytes>(Get(toolkit::GetSavedBlock));
        CHECK((*this)(toolkit::EndSave) == S_OK);
        return saved;
    }

private:
    Sink m_sink;
    toolkit::IControl* m_control = nullptr;
    DWORD m_cookie = 0;
};

template <class Value>
void Append(Bytes& bytes, Value value) {
    bytes.resize(bytes.size() + sizeof value);
    std::memcpy(bytes.data() + bytes.size() - sizeof value, &value, sizeof value);
}

/// The first bytes of a file.
inline Bytes Cut(const Bytes& file, std::size_t size) {
    return {file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)};
}

/// A kind of packed bitmap: what its header says, and the bytes behind that.
struct Shape {
    LONG width, height; ///< negative: the top row first
    WORD depth;
    DWORD colours = 0; ///< as the header says
    DWORD headerBytes = 40;
    DWORD compression = BI_RGB;
    std::initializer_list<DWORD> masks = {};

    std::size_t RowBytes() const { return (static_cast<std::size_t>(width) * depth + 31) / 32 * 4; }
    std::size_t Table() const { return colours == 0 && depth <= 8 ? std::size_t{4} << depth : 4 * colours; }
};

/// The header's 40 bytes and the masks.
inline Bytes FrontOf(const Shape& shape) {
    BITMAPINFOHEADER header = {};
    header.biSize = shape.headerBytes;
    header.biWidth = shape.width;
    header.biHeight = shape.height;
    header.biPlanes = 1;
    header.biBitCount = shape.depth;
    header.biCompression = shape.compression;
    header.biClrUsed = shape.colours;
    Bytes front;
    Append(front, header);
    for (const DWORD mask : shape.masks)
        Append(front, mask);
    return front;
}

/// A packed bitmap with colours and pixels that follow from @p seed, padding included.
inline Bytes DibOf(const Shape& shape, std::uint32_t seed = 1) {
    Bytes dib = FrontOf(shape);
    const auto height = static_cast<std::size_t>(shape.height < 0 ? -shape.height : shape.height);
    const std::size_t front = std::max<std::size_t>(shape.headerBytes, dib.size());
    const std::size_t size = front + shape.Table() + shape.RowBytes() * height;
    dib.resize(front);
    while (dib.size() < size) {
        seed = seed * 1664525 + 1013904223;
        dib.push_back(static_cast<BYTE>(seed >> 24));
    }
    return dib;
}

} // namespace kel::test
