#include "imaging/Blocks.h"
#include "imaging/ToolkitControl.h"

#include <kelcore/text.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <utility>

namespace {

using kel::toolkit::IControl;

// The layout of docs/formats/picture.md: length, form, data, file name.
using Length = std::uint32_t;
using Form = std::uint16_t;
constexpr Form kSavedFile = 0; // any other form is a packed bitmap
constexpr Length kLongest = std::numeric_limits<std::int32_t>::max();

// What a stored length may claim before its bytes have arrived.
constexpr Length kFirstPiece = 16 << 20;

constexpr LONG kToMemory = 1;
constexpr LONG kOwnFormat = 10;

[[noreturn]] void Fail(const String& message) {
    throw StreamBase::Exception(/*code*/ 0, message);
}

template <class Field>
void WriteField(SerializingOutputStream& stream, Field field) {
    stream.Write(reinterpret_cast<const char*>(&field), static_cast<int>(sizeof field));
}

template <class Field>
Field ReadField(SerializingInputStream& stream) {
    Field field = 0;
    stream.Read(reinterpret_cast<char*>(&field), static_cast<int>(sizeof field));
    return field;
}

// The block of the saved picture, which stays the toolkit's.
HGLOBAL Saved(IControl* control) {
    kel::CallToolkit(control, kel::toolkit::SetSaveTarget, kToMemory);
    kel::CallToolkit(control, kel::toolkit::SetSaveFormat, kOwnFormat);
    kel::CallToolkit(control, kel::toolkit::Save);
    return kel::AskToolkit(control, kel::toolkit::GetSavedBlock);
}

void WriteBlock(SerializingOutputStream& stream, HGLOBAL saved) {
    const kel::LockedBlock block(saved);
    if (!block.Bytes())
        Fail(u"GlobalLock failed"_w);
    const SIZE_T size = GlobalSize(saved);
    if (size > kLongest)
        Fail(u"ImagXpress failed"_w);
    WriteField(stream, static_cast<Length>(size));
    WriteField(stream, kSavedFile);
    stream.Write(block.Bytes(), static_cast<int>(size));
}

void ReadPiece(SerializingInputStream& stream, HGLOBAL memory, Length from, Length to) {
    const kel::LockedBlock block(memory);
    if (!block.Bytes())
        throw std::bad_alloc();
    stream.Read(block.Bytes() + from, static_cast<int>(to - from));
}

// A block that grows with the bytes that arrive: a damaged length ends with the stream, not with the memory.
void ReadBlock(SerializingInputStream& stream, Length length, kel::OwnedBlock& block) {
    for (Length arrived = 0; arrived != length;) {
        const Length next =
            length - arrived <= std::max(arrived, kFirstPiece) ? length : arrived + std::max(arrived, kFirstPiece);
        if (!block.Resize(next))
            throw std::bad_alloc();
        ReadPiece(stream, block.Get(), arrived, next);
        arrived = next;
    }
}

void LoadSavedFile(IControl* control, kel::OwnedBlock& file, Length length) {
    kel::ForgetLoadStatus(control);
    {
        const kel::OwnedBlock bytes(file.Release()); // not needed any longer than for loading
        const kel::LockedBlock block(bytes.Get());
        if (!block.Bytes())
            throw std::bad_alloc();
        kel::CallToolkit(control, kel::toolkit::LoadFromMemory, reinterpret_cast<const BYTE*>(block.Bytes()),
                         static_cast<LONG>(length));
    }
    if (kel::LoadStatusOf(control) != kel::toolkit::kLoaded)
        Fail(u"ImageXpress failed"_w);
}

} // namespace

short XPDib::Version() const {
    return 1;
}

void XPDib::Write(SerializingOutputStream& stream) const {
    IControl* const control = m_pRef->control;
    if (!control || !kel::PictureOf(control)) {
        WriteField(stream, Length{0});
        return;
    }
    kel::ForgetLoadStatus(control);
    const HGLOBAL saved = Saved(control);
    if (!saved || kel::LoadStatusOf(control) != kel::toolkit::kLoaded)
        Fail(u"ImagXpress failed"_w);
    WriteBlock(stream, saved);
    kel::CallToolkit(control, kel::toolkit::EndSave);
    static_cast<OutputStream&>(stream) << m_pRef->fileName;
}

void XPDib::Read(SerializingInputStream& stream, short) {
    SetEmpty();
    Detach();
    m_pRef->fileName.clear();
    const auto length = ReadField<Length>(stream);
    if (length == 0)
        return;
    if (!InitImageXpress(m_pRef))
        Fail(u"Initializing ImageXpress failed"_w);
    const auto form = ReadField<Form>(stream);
    // The toolkit could not be told of more.
    if (length > kLongest)
        Fail(u"ImageXpress failed"_w);
    kel::OwnedBlock data;
    ReadBlock(stream, length, data);
    if (form == kSavedFile)
        LoadSavedFile(m_pRef->control, data, length);
    else
        TakeBlock(data);
    WideString name;
    static_cast<InputStream&>(stream) >> name;
    m_pRef->fileName = std::move(name);
}
