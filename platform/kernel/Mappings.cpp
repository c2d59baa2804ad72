#include "platform/kernel/Descriptor.h"
#include "platform/kernel/Faults.h"
#include "platform/kernel/FileObject.h"
#include "platform/kernel/LastError.h"
#include "platform/kernel/Views.h"

#include <kelcore/platform/mappings.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <map>
#include <mutex>
#include <new>

namespace kel::platform {
namespace {

constexpr std::uint64_t kGranularity = 64 * 1024;

/// A file, or memory of its own, that views are made of.
class Mapping final : public Object {
public:
    static constexpr ObjectKind kKind = ObjectKind::Mapping;

    /// @param file what is mapped, or null for @p memory.
    Mapping(std::shared_ptr<FileObject> file, Descriptor memory, std::uint64_t size, DWORD protection)
        : Object(kKind), m_file(std::move(file)), m_memory(std::move(memory)), m_size(size), m_protection(protection) {
        if (m_file)
            Register();
    }

    ~Mapping() override {
        if (m_file)
            Unregister();
    }

    int HostDescriptor() const { return m_file ? m_file->descriptor : m_memory.Get(); }
    std::uint64_t Size() const { return m_size; }
    DWORD Protection() const { return m_protection; }

private:
    void Register() const;
    void Unregister() const;

    const std::shared_ptr<FileObject> m_file;
    const Descriptor m_memory;
    const std::uint64_t m_size;
    const DWORD m_protection;
};

struct View {
    std::size_t size;
    std::shared_ptr<Mapping> mapping;
};

struct ViewTable {
    std::mutex mutex;
    std::map<std::uintptr_t, View> views; // by address
};

ViewTable& Views() {
    static ViewTable& table = *new ViewTable; // outlives all static objects that unmap
    return table;
}

struct MappedFiles {
    std::mutex mutex;
    std::multimap<FileId, std::uint64_t> sizes; // one for each live mapping
};

MappedFiles& Mapped() {
    static MappedFiles& files = *new MappedFiles;
    return files;
}

void Mapping::Register() const {
    MappedFiles& files = Mapped();
    std::lock_guard guard(files.mutex);
    files.sizes.emplace(m_file->id, m_size);
    m_file->mappings.fetch_add(1, std::memory_order_relaxed);
}

void Mapping::Unregister() const {
    MappedFiles& files = Mapped();
    std::lock_guard guard(files.mutex);
    auto mapping = files.sizes.lower_bound(m_file->id);
    while (mapping->second != m_size)
        ++mapping;
    files.sizes.erase(mapping);
    m_file->mappings.fetch_sub(1, std::memory_order_relaxed);
}

bool IsProtection(DWORD protection) {
    return protection == PAGE_READONLY || protection == PAGE_READWRITE || protection == PAGE_WRITECOPY;
}

DWORD RightsNeeded(DWORD protection) {
    return protection == PAGE_READWRITE ? FILE_READ_DATA | FILE_WRITE_DATA : FILE_READ_DATA;
}

// The disk's room is taken at once: a page of a view that has none left would end the process when it is touched.
bool Grow(int descriptor, off_t oldSize, off_t size) {
    if (fallocate(descriptor, /*mode*/ 0, oldSize, size - oldSize) == 0)
        return true;
    return (errno == EOPNOTSUPP && ftruncate(descriptor, size) == 0) || FailFromHost();
}

// The size of a mapping for which @p size was asked; 0 with the last error set if there can be none.
std::uint64_t FitSize(const FileObject& file, std::uint64_t size, DWORD protection) {
    struct stat facts;
    if (fstat(file.descriptor, &facts) == -1)
        return FailFromHost();
    const auto present = static_cast<std::uint64_t>(facts.st_size);
    if (size == 0)
        return present != 0 ? present : Fail(ERROR_FILE_INVALID);
    if (size <= present)
        return size;
    if (protection != PAGE_READWRITE)
        return Fail(ERROR_NOT_ENOUGH_MEMORY);
    if (size > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()))
        return Fail(ERROR_DISK_FULL);
    return Grow(file.descriptor, facts.st_size, static_cast<off_t>(size)) ? size : 0;
}

std::shared_ptr<Mapping> MapFile(HANDLE handle, DWORD protection, std::uint64_t size) {
    const PinnedFile file(handle, /*rights*/ 0);
    if (!file)
        return nullptr;
    if (file->kind != FileKind::Disk)
        return Fail(ERROR_BAD_EXE_FORMAT), nullptr;
    if ((file.Access() & RightsNeeded(protection)) != RightsNeeded(protection))
        return Fail(ERROR_ACCESS_DENIED), nullptr;
    size = FitSize(*file, size, protection);
    if (size == 0)
        return nullptr;
    return std::make_shared<Mapping>(std::static_pointer_cast<FileObject>(file.Shared()), /*memory*/ Descriptor(), size,
                                     protection);
}

std::shared_ptr<Mapping> MapMemory(DWORD protection, std::uint64_t size) {
    if (size == 0 || size > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()))
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    Descriptor memory(memfd_create("mapping", MFD_CLOEXEC));
    if (!memory || ftruncate(memory.Get(), static_cast<off_t>(size)) == -1)
        return FailFromHost(), nullptr;
    return std::make_shared<Mapping>(nullptr, std::move(memory), size, protection);
}

// How a view with @p access is mapped by the host; false if the mapping's protection does not allow it.
bool HostMode(DWORD access, DWORD protection, int& pages, int& flags) {
    constexpr DWORD kExecute = 0x20;
    const bool writes = access & FILE_MAP_WRITE;
    const bool copies = access == FILE_MAP_COPY;
    pages = writes || copies ? PROT_READ | PROT_WRITE : PROT_READ;
    flags = copies ? MAP_PRIVATE : MAP_SHARED;
    return (!writes || protection == PAGE_READWRITE) && !(access & kExecute);
}

void* MapPart(const std::shared_ptr<Mapping>& mapping, DWORD access, std::uint64_t offset, std::size_t size) {
    int pages;
    int flags;
    if (!HostMode(access, mapping->Protection(), pages, flags))
        return Fail(ERROR_ACCESS_DENIED), nullptr;
    ViewTable& table = Views();
    std::lock_guard guard(table.mutex);
    void* view = mmap(nullptr, size, pages, flags, mapping->HostDescriptor(), static_cast<off_t>(offset));
    if (view == MAP_FAILED)
        return FailFromHost(), nullptr;
    try {
        table.views.emplace(reinterpret_cast<std::uintptr_t>(view), View{size, mapping});
    } catch (const std::bad_alloc&) {
        munmap(view, size);
        return Fail(ERROR_NOT_ENOUGH_MEMORY), nullptr;
    }
    return view;
}

bool Unmap(LPCVOID address) {
    ViewTable& table = Views();
    std::shared_ptr<Mapping> last; // closes the file after the table is unlocked
    std::lock_guard guard(table.mutex);
    const auto found = table.views.find(reinterpret_cast<std::uintptr_t>(address));
    if (found == table.views.end())
        return Fail(ERROR_INVALID_ADDRESS);
    munmap(const_cast<void*>(address), found->second.size);
    last = std::move(found->second.mapping);
    table.views.erase(found);
    return true;
}

} // namespace

std::size_t OpenViews() {
    ViewTable& table = Views();
    std::lock_guard guard(table.mutex);
    return table.views.size();
}

std::int64_t MappedSize(const FileId& file) {
    MappedFiles& files = Mapped();
    std::lock_guard guard(files.mutex);
    std::uint64_t needed = 0;
    for (auto [mapping, end] = files.sizes.equal_range(file); mapping != end; ++mapping)
        needed = std::max(needed, mapping->second);
    return static_cast<std::int64_t>(needed);
}

} // namespace kel::platform

using namespace kel::platform;

HANDLE WINAPI CreateFileMappingA(HANDLE file, LPSECURITY_ATTRIBUTES security, DWORD protection, DWORD sizeHigh,
                                 DWORD sizeLow, LPCSTR name) {
    if (CallFails("CreateFileMappingA"))
        return nullptr;
    const std::uint64_t size = std::uint64_t{sizeHigh} << 32 | sizeLow;
    const DWORD pages = protection & ~static_cast<DWORD>(SEC_COMMIT | SEC_RESERVE);
    if (!IsProtection(pages))
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    if (name && *name != '\0')
        return Fail(ERROR_NOT_SUPPORTED), nullptr;
    try {
        auto mapping = file == INVALID_HANDLE_VALUE ? MapMemory(pages, size) : MapFile(file, pages, size);
        if (!mapping)
            return nullptr;
        SetLastError(NO_ERROR);
        return OpenHandle(std::move(mapping), FILE_MAP_ALL_ACCESS, security && security->bInheritHandle);
    } catch (const std::bad_alloc&) {
        return Fail(ERROR_NOT_ENOUGH_MEMORY), nullptr;
    }
}

LPVOID WINAPI MapViewOfFile(HANDLE mapping, DWORD access, DWORD offsetHigh, DWORD offsetLow, SIZE_T count) {
    if (CallFails("MapViewOfFile"))
        return nullptr;
    const Pinned<Mapping> pinned(mapping);
    if (!pinned)
        return nullptr;
    const std::uint64_t offset = std::uint64_t{offsetHigh} << 32 | offsetLow;
    if (offset % kGranularity != 0)
        return Fail(ERROR_MAPPED_ALIGNMENT), nullptr;
    if (offset >= pinned->Size() || count > pinned->Size() - offset)
        return Fail(ERROR_ACCESS_DENIED), nullptr;
    return MapPart(pinned.Hold(), access, offset, count != 0 ? count : pinned->Size() - offset);
}

BOOL WINAPI UnmapViewOfFile(LPCVOID view) {
    // Unmapping is done before an injected failure is reported, see CallFails.
    const bool fails = CallFails("UnmapViewOfFile");
    const DWORD fault = GetLastError();
    const bool unmapped = Unmap(view);
    return fails ? Fail(fault) : unmapped;
}

BOOL WINAPI FlushViewOfFile(LPCVOID address, SIZE_T count) {
    if (CallFails("FlushViewOfFile"))
        return FALSE;
    const auto at = reinterpret_cast<std::uintptr_t>(address);
    ViewTable& table = Views();
    std::lock_guard guard(table.mutex);
    auto view = table.views.upper_bound(at);
    if (view == table.views.begin() || at - (--view)->first >= view->second.size)
        return Fail(ERROR_INVALID_ADDRESS);
    const std::size_t room = view->second.size - (at - view->first);
    const std::uintptr_t page = at & ~static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE) - 1);
    const std::size_t length = (count == 0 || count > room ? room : count) + (at - page);
    return msync(reinterpret_cast<void*>(page), length, MS_SYNC) == 0 || FailFromHost();
}
