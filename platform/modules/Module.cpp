#include "platform/modules/Module.h"

#include "platform/kernel/Descriptor.h"
#include "platform/kernel/LastError.h"

#include <elf.h>
#include <fcntl.h>

#include <cstring>

namespace kel::platform {
namespace {

Descriptor OpenToRead(const std::string& hostPath) {
    // Opening a pipe must not wait for its other end.
    return Descriptor(open(hostPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
}

} // namespace

std::unique_ptr<Resources> ReadResources(const std::string& hostPath) {
    const Descriptor file = OpenToRead(hostPath);
    if (!file)
        return FailFromHost(), nullptr;
    ResourceSection section;
    if (ReadResourceSection(file.Get(), section) != PeResult::Read)
        return Fail(ERROR_BAD_EXE_FORMAT), nullptr;
    return std::make_unique<Resources>(std::move(section));
}

std::unique_ptr<Resources> ReadResourcesOf(const std::string& hostPath) {
    if (!IsNativeFile(hostPath))
        return ReadResources(hostPath);
    auto resources = ReadResources(hostPath + ".rsrc");
    if (!resources)
        Fail(ERROR_RESOURCE_DATA_NOT_FOUND);
    return resources;
}

bool IsNativeFile(const std::string& hostPath) {
    const Descriptor file = OpenToRead(hostPath);
    char magic[SELFMAG];
    return file && read(file.Get(), magic, SELFMAG) == SELFMAG && std::memcmp(magic, ELFMAG, SELFMAG) == 0;
}

Module::Module(std::string hostPath, const void* base)
    : m_hostPath(std::move(hostPath)), m_native(true),
      m_handle(reinterpret_cast<HMODULE>(reinterpret_cast<std::uintptr_t>(base))) {}

Module::Module(std::string hostPath, std::unique_ptr<Resources> resources)
    : m_hostPath(std::move(hostPath)), m_native(false), m_handle(reinterpret_cast<HMODULE>(this)),
      m_resources(std::move(resources)) {}

const Resources* Module::GetResources() {
    if (m_native)
        std::call_once(m_looked, [this] { m_resources = ReadResources(m_hostPath + ".rsrc"); });
    if (!m_resources)
        Fail(ERROR_RESOURCE_DATA_NOT_FOUND);
    return m_resources.get();
}

} // namespace kel::platform
