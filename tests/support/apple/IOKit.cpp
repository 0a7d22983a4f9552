#include <IOKit/IOKitLib.h>

#include <vector>

#include "support/apple/AppleFrameworks.h"
#include "support/apple/AppleObject.h"
#include "support/apple/IORegistry.h"

using quiverly::AppleFrameworks;
using quiverly::VirtualPlatform;
using quiverly::VirtualRegistry;
using quiverly::VirtualService;

namespace {

constexpr char classNameKey[] = "IOProviderClass";

VirtualRegistry& registry() {
    return VirtualPlatform::current().registry;
}

struct Iterator {
    std::vector<std::size_t> services;
    std::size_t next = 0;
};

struct Entry {
    std::size_t service;
};

// Names that were given out and not yet released. No name is given out twice, so that one used after its release is
// known for what it is. Main thread only, like every lookup.
std::map<io_object_t, std::variant<Iterator, Entry>> objects;

io_object_t lend(std::variant<Iterator, Entry> object) {
    static io_object_t lastName = 0x1000;
    objects.emplace(++lastName, std::move(object));
    registry().lend(1);
    return lastName;
}

template<class Object>
Object& objectNamed(io_object_t name) {
    const auto found = objects.find(name);
    Object* object = found == objects.end() ? nullptr : std::get_if<Object>(&found->second);
    if (object == nullptr) VirtualPlatform::fault("a name of the registry that is not that of such an object");
    return *object;
}

CFTypeRef toProperty(const VirtualService::Properties::mapped_type& value) {
    struct Convert {
        CFTypeRef operator()(std::int64_t value) const { return AppleObject::create<__CFNumber>(value); }
        CFTypeRef operator()(double value) const { return AppleObject::create<__CFNumber>(value); }
        CFTypeRef operator()(bool) const { return AppleObject::create<AppleBoolean>(); }
        CFTypeRef operator()(const std::string& value) const { return AppleObject::create<__CFString>(value); }
    };
    return std::visit(Convert{}, value);
}

} // namespace

const mach_port_t kIOMainPortDefault = 0;

std::size_t quiverly::serviceNamed(io_service_t name) {
    return objectNamed<Entry>(name).service;
}

CFMutableDictionaryRef IOServiceMatching(const char* name) {
    if (!registry().canMatch(name)) return nullptr;
    auto* const dictionary = AppleObject::create<__CFDictionary>();
    dictionary->values.emplace(classNameKey, AppleObject::create<__CFString>(name));
    return dictionary;
}

kern_return_t IOServiceGetMatchingServices(mach_port_t mainPort, CFDictionaryRef matching, io_iterator_t* existing) {
    if (mainPort != kIOMainPortDefault) VirtualPlatform::fault("a lookup through another port than the main one");
    auto found = registry().find(static_cast<CFStringRef>(matching->values.at(classNameKey))->text);
    CFRelease(matching);
    const bool hasIterator =
        found ? !found->empty() || !AppleFrameworks::occurs(&AppleFrameworks::emptyLookupHasNoIterator)
              : AppleFrameworks::occurs(&AppleFrameworks::failedLookupHasIterator);
    if (hasIterator) {
        *existing = lend(Iterator{found.value_or(std::vector<std::size_t>{})});
    }
    return found ? KERN_SUCCESS : kIOReturnError;
}

io_object_t IOIteratorNext(io_iterator_t iterator) {
    if (iterator == IO_OBJECT_NULL) return IO_OBJECT_NULL;
    auto& [services, next] = objectNamed<Iterator>(iterator);
    if (next == services.size()) return IO_OBJECT_NULL;
    registry().tell("next " + std::to_string(services[next]));
    return lend(Entry{services[next++]});
}

kern_return_t IOObjectRelease(io_object_t object) {
    const auto found = objects.find(object);
    if (found == objects.end()) VirtualPlatform::fault("a release of what is not there");
    const auto* const entry = std::get_if<Entry>(&found->second);
    registry().tell("release " + (entry != nullptr ? std::to_string(entry->service) : "services"));
    objects.erase(found);
    registry().lend(-1);
    return KERN_SUCCESS;
}

kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry, CFMutableDictionaryRef* properties,
                                                CFAllocatorRef, IOOptionBits options) {
    if (options != 0) VirtualPlatform::fault("properties are read with options");
    const std::size_t service = quiverly::serviceNamed(entry);
    registry().tell("properties " + std::to_string(service));
    const auto& described = registry().services[service].properties;
    if (!described) return kIOReturnError;

    *properties = AppleObject::create<__CFDictionary>();
    for (const auto& [key, value] : *described) (*properties)->values.emplace(key, toProperty(value));
    return AppleFrameworks::occurs(&AppleFrameworks::propertiesComeWithAnError) ? kIOReturnError : KERN_SUCCESS;
}

kern_return_t IORegistryEntrySetCFProperty(io_registry_entry_t entry, CFStringRef propertyName, CFTypeRef property) {
    if (CFGetTypeID(propertyName) != AppleObject::string) VirtualPlatform::fault("a property's name is not a text");
    if (CFGetTypeID(property) != AppleObject::number) VirtualPlatform::fault("a property is not a number");
    const auto value = std::get<std::int64_t>(static_cast<CFNumberRef>(property)->value);
    registry().tell("set " + std::to_string(quiverly::serviceNamed(entry)) + ' ' + propertyName->text + ' ' +
                    std::to_string(value));
    return kIOReturnNotPermitted; // and must not be looked at
}
