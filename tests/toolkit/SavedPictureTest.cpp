#include "tests/toolkit/Toolkit.h"

using namespace kel::test;

namespace {

// The example of docs/formats/saved-picture.md.
const Bytes kExample = {0x4B, 0x50, 0x49, 0x43, 0x0D, 0x0A, 0x1A, 0x0A, 0x01, 0x00, 0x00, 0x00, 0x48, 0x00, 0x00, 0x00,
                        0x85, 0x16, 0x8D, 0x0F, 0x09, 0x9F, 0x47, 0x32, 0x28, 0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00,
                        0x28, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x01, 0x00, 0x18, 0x00,
                        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
                        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x78, 0x01, 0xFB, 0xCF, 0xC0, 0xC0, 0xF0, 0xFF,
                        0x3F, 0x23, 0x23, 0x23, 0xC3, 0x7F, 0x06, 0x06, 0xA6, 0xFF, 0x0C, 0x00, 0x2F, 0x02, 0x05, 0x01};
const Bytes kExampleRows = {0xFF, 0, 0, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0xFF, 0, 0xFF, 0, 0, 0};

constexpr std::size_t kFileHeader = 24;
constexpr std::size_t kKindAt = 10;

// A bitmap file of run-length encoding, far smaller than its 64 x 64 pixels.
Bytes RunsFile() {
    Bytes file = {'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    const Bytes header = FrontOf({64, 64, 8, 2, 40, BI_RLE8});
    file.insert(file.end(), header.begin(), header.end());
    Append(file, std::uint64_t{0x00F0E0D0'00102030}); // two colours
    for (BYTE row = 0; row < 64; ++row)
        file.insert(file.end(), {row, 1, static_cast<BYTE>(64 - row), 0, 0, 0});
    file.insert(file.end(), {0, 1});
    return file;
}

void CheckLossless(const Bytes& dib) {
    const Control control;
    REQUIRE(control(toolkit::SetDibHandle, BlockOf(dib)) == S_OK);
    Bytes saved = control.Saved();
    saved.resize(saved.size() + 9, 0xEE); // blocks may be larger than what lies in them
    const Control other;
    REQUIRE(other.Load(saved) == toolkit::kLoaded);
    CHECK(other.Picture() == dib);
}

} // namespace

TEST_CASE("saving keeps every byte of a packed bitmap, at every depth") {
    for (const WORD depth : {1, 4, 8, 16, 24, 32})
        for (const LONG height : {1, 2, 23, -23}) {
            CAPTURE(depth);
            CheckLossless(DibOf({1, height, depth}));
            CheckLossless(DibOf({61, height, depth}, 77));
            CheckLossless(DibOf({61, height, depth, depth == 1 ? 1U : 7U, 124}, 78)); // short tables, long headers
        }
    CheckLossless(DibOf({5, 5, 32, 0, 108, BI_BITFIELDS, {0xFF0000, 0x00FF00, 0x0000FF}}));
    Bytes smooth = DibOf({300, 200, 24});
    for (std::size_t i = 40; i < smooth.size(); ++i)
        smooth[i] = static_cast<BYTE>(i / 900 + i % 900 / 3);
    CheckLossless(smooth);
}

TEST_CASE("the format is what its page says") {
    const Control control;
    REQUIRE(control.Load(kExample) == toolkit::kLoaded);
    const Bytes picture = control.Picture();
    REQUIRE(picture.size() == 40 + kExampleRows.size());
    CHECK(Bytes(picture.begin() + 40, picture.end()) == kExampleRows);
    const Bytes saved = control.Saved();
    CHECK(Bytes(saved.begin(), saved.begin() + 12) == Bytes(kExample.begin(), kExample.begin() + 12));
    CHECK(Bytes(saved.begin() + 24, saved.begin() + 72) == Bytes(kExample.begin() + 24, kExample.begin() + 72));
    CHECK(control.Load(saved) == toolkit::kLoaded);
    CHECK(control.Picture() == picture);
}

TEST_CASE("no damage goes unseen: each bit changed, each length cut") {
    const Control control;
    const Bytes file = RunsFile();
    REQUIRE(control.Load(file) == toolkit::kLoaded);
    for (const Bytes& whole : {kExample, control.Saved()}) {
        for (std::size_t bit = 0; bit < 8 * whole.size(); ++bit) {
            Bytes damaged = whole;
            damaged[bit / 8] = static_cast<BYTE>(damaged[bit / 8] ^ 1 << bit % 8);
            const SHORT expected = bit < 8 * 8 ? toolkit::kUnknown : toolkit::kDamaged;
            if (control.Load(damaged) != expected || !control.Picture().empty())
                FAIL_CHECK("bit " << bit << " of " << whole.size() << " bytes");
        }
        for (std::size_t size = 0; size < whole.size(); ++size)
            if (control.Load(Cut(whole, size)) == toolkit::kLoaded)
                FAIL_CHECK("cut to " << size);
    }
}

TEST_CASE("an unchanged picture is saved as the file it came from, a changed one as its bitmap") {
    const Control control;
    const Bytes file = RunsFile();
    REQUIRE(control.Load(file) == toolkit::kLoaded);
    const Bytes picture = control.Picture();
    const Bytes saved = control.Saved();
    CHECK(saved[kKindAt] == 1);
    CHECK(Bytes(saved.begin() + kFileHeader, saved.end()) == file);
    REQUIRE(control.Load(saved) == toolkit::kLoaded);
    CHECK(control.Picture() == picture);
    CHECK(control.Saved() == saved);

    const HGLOBAL block = control.Get(toolkit::GetDibHandle);
    static_cast<BYTE*>(GlobalLock(block))[picture.size() - 1] ^= 1;
    GlobalUnlock(block);
    const Bytes changed = control.Picture();
    const Bytes savedChange = control.Saved();
    CHECK(savedChange[kKindAt] == 0);
    REQUIRE(control.Load(savedChange) == toolkit::kLoaded);
    CHECK(control.Picture() == changed);
}

TEST_CASE("what undo brings back is still the file's picture") {
    const Control control;
    REQUIRE(control.Load(RunsFile()) == toolkit::kLoaded);
    const Bytes saved = control.Saved();
    CHECK(control(toolkit::SetUndoEnabled, 1) == S_OK);
    CHECK(control(toolkit::Flip) == S_OK);
    CHECK(control.Saved()[kKindAt] == 0);
    CHECK(control(toolkit::Undo) == S_OK);
    CHECK(control.Saved() == saved);
}

TEST_CASE("saving nothing gives nothing") {
    const Control control;
    CHECK(control(toolkit::Save) == S_OK);
    CHECK(control.Get(toolkit::GetLoadStatus) != toolkit::kLoaded);
    CHECK(control.Get(toolkit::GetSavedBlock) == nullptr);
    CHECK(control(toolkit::EndSave) == S_OK);
    REQUIRE(control(toolkit::CreateBlank, 3, 3, 8, 0) == S_OK);
    CHECK(control(toolkit::Save) == S_OK);
    const HGLOBAL first = control.Get(toolkit::GetSavedBlock);
    CHECK(control(toolkit::Save) == S_OK); // frees what was saved before
    const HGLOBAL second = control.Get(toolkit::GetSavedBlock);
    CHECK(control(toolkit::EndSave) == S_OK);
    CHECK(control.Get(toolkit::GetSavedBlock) == nullptr);
    CHECK((first == second || GlobalFlags(first) == GMEM_INVALID_HANDLE));
    CHECK(GlobalFlags(second) == GMEM_INVALID_HANDLE);
}

TEST_CASE("the budget counts for saved pictures") {
    const Control control;
    REQUIRE(control(toolkit::CreateBlank, 1024, 1024, 32, 0) == S_OK);
    const Bytes saved = control.Saved();
    CHECK(saved.size() < 100000);
    CHECK(control(toolkit::SetBudget, 4) == S_OK);
    CHECK(control.Load(saved) == toolkit::kOverBudget); // by the header of 40 bytes
    CHECK(control.Get(toolkit::GetDibHandle) == nullptr);
    CHECK(control(toolkit::SetBudget, 5) == S_OK);
    CHECK(control.Load(saved) == toolkit::kLoaded);
    CHECK(control(toolkit::SetPixelBudget, 1) == S_OK);
    CHECK(control.Load(saved) == toolkit::kLoaded);
    REQUIRE(control(toolkit::CreateBlank, 1025, 1024, 32, 0) == S_OK);
    CHECK(control.Load(control.Saved()) == toolkit::kOverBudget);
}
