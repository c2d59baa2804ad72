#include <kelcore/stream/factory.h>

#include "stream/TypeNames.h"

IObjectFactoryObjectFunctions::~IObjectFactoryObjectFunctions() = default;

ObjectFactory::ObjectFactory() = default;

ObjectFactory::~ObjectFactory() {
    for (const auto& entry : m_registry)
        delete entry.second;
}

int ObjectFactory::GetClassID(const std::type_info& type) const {
    return GetClassID(kel::NormalTypeName(type).c_str());
}

int ObjectFactory::GetClassID(const char* name) const {
    unsigned __int32 hash = 0;
    for (; *name != '\0'; ++name)
        hash += (hash << 1) ^ static_cast<unsigned __int32>(static_cast<signed char>(*name));
    return static_cast<int>(hash);
}

const IObjectFactoryObjectFunctions* ObjectFactory::GetObjectFactoryObjectFunctions(int id) const {
    const auto entry = m_registry.find(id);
    return entry == m_registry.end() ? nullptr : entry->second;
}

IUnknown* ObjectFactory::CreateObject(const std::type_info& type) const {
    return CreateObject(GetClassID(type));
}

IUnknown* ObjectFactory::CreateObject(const char* name) const {
    return CreateObject(GetClassID(name));
}

IUnknown* ObjectFactory::CreateObject(int id) const {
    const auto entry = m_registry.find(id);
    return entry == m_registry.end() ? nullptr : entry->second->Create();
}

void ObjectFactory::Register(const IUnknown& example, const char* name, IObjectFactoryObjectFunctions* functions) {
    const int id = name == nullptr ? GetClassID(typeid(example)) : GetClassID(name);
    IObjectFactoryObjectFunctions*& entry = m_registry[id];
    if (entry != functions)
        delete entry;
    entry = functions;
}
