#include "nuObj2Xml/registry.h"

#include <mutex>
#include <vector>

#include "host/runtime/classRegistry.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/persistent.h"
#include "nuObj2Xml/messages.h"
#include "nuObj2Xml/specialSerializers.h"

namespace {

/// An entry of the list.
struct Entry {
    const host::TClassInfo* info;
    const TNuSerializerClass* serializerClass;
    std::unique_ptr<Entry> next;
};

class Registry {
public:
    Registry() {
        // The class registry is to be there longer than this one.
        static_cast<void>(host::FindClass({}));
        enter(host::classOf<host::TPersistent>, nu::serializerOf<TNuSerializer>);
        enter(host::classOf<host::TStringList>, nu::serializerOf<TNuStringsSerializer>);
        enter(host::classOf<host::TCollection>, nu::serializerOf<TNuCollectionSerializer>);
        enter(host::classOf<host::TComponent>, nu::serializerOf<TNuComponentSerializer>);
        enter(host::classOf<host::TWindowedControl>, nu::serializerOf<TNuControlSerializer>);
    }
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;
    /// Comes when the library is unloaded.
    ~Registry() {
        // One by one: a chain that frees itself needs a level of the stack for each entry.
        while (head_) {
            head_ = std::move(head_->next);
        }
        for (const host::TClassInfo* const info : registered_) {
            host::UnregisterClass(*info);
        }
    }

    void enter(const host::TClassInfo& info, const TNuSerializerClass& serializerClass) {
        const std::lock_guard lock(mutex_);
        // 1. The same class, anywhere: another serializer.
        for (Entry* entry = head_.get(); entry != nullptr; entry = entry->next.get()) {
            if (entry->info->is(info)) {
                entry->info = &info;
                entry->serializerClass = &serializerClass;
                return;
            }
        }
        // 2. Before the first ancestor; or else behind the last descendant, which would never be
        //    found behind it; or else at the head.
        std::unique_ptr<Entry>* place = &head_;
        for (std::unique_ptr<Entry>* link = &head_; *link; link = &(*link)->next) {
            if (info.derivesFrom(*(*link)->info)) {
                place = link;
                break;
            }
            if ((*link)->info->derivesFrom(info)) {
                place = &(*link)->next;
            }
        }
        *place = std::make_unique<Entry>(Entry{&info, &serializerClass, std::move(*place)});
    }

    void remove(const host::TClassInfo& info) noexcept {
        const std::lock_guard lock(mutex_);
        std::erase_if(registered_, [&](const host::TClassInfo* entry) { return entry->is(info); });
        for (std::unique_ptr<Entry>* link = &head_; *link; link = &(*link)->next) {
            if ((*link)->info->is(info)) {
                *link = std::move((*link)->next);
                return;
            }
        }
    }

    const TNuSerializerClass* find(const host::TClassInfo& info) {
        const std::lock_guard lock(mutex_);
        for (Entry* entry = head_.get(); entry != nullptr; entry = entry->next.get()) {
            if (info.derivesFrom(*entry->info)) {
                return entry->serializerClass;
            }
        }
        return nullptr;
    }

    void registerClass(const host::TClassInfo& info) {
        const std::lock_guard lock(mutex_);
        if (host::RegisterClass(info)) {
            registered_.push_back(&info);
        }
    }

private:
    std::mutex mutex_;
    std::unique_ptr<Entry> head_;
    /// The classes that were entered into the class registry from here.
    std::vector<const host::TClassInfo*> registered_;
};

Registry& registry() {
    static Registry instance;
    return instance;
}

} // namespace

void NuRegisterSerializationClass(const host::TClassInfo& info,
                                  const TNuSerializerClass& serializerClass) {
    nu::registerPersistentClass(info);
    registry().enter(info, serializerClass);
}

void NuUnregisterSerializationClass(const host::TClassInfo& info) noexcept {
    registry().remove(info);
    host::UnregisterClass(info);
}

std::unique_ptr<TNuSerializer> GetNuSerializer(host::TObject* instance) {
    return instance == nullptr
               ? nullptr
               : nu::serializerClassOf(instance->ClassInfo()).createFromInstance(*instance);
}

std::unique_ptr<TNuSerializer> GetNuSerializer(const host::TClassInfo& info) {
    return nu::serializerClassOf(info).createFromClass(info);
}

std::unique_ptr<TNuSerializer> GetNuSerializer(std::u16string_view className) {
    const host::TClassInfo* const info = host::FindClass(className);
    if (info == nullptr) {
        throw host::Exception(host::formatMessage(nu::messages::classNotRegistered, {className}));
    }
    return GetNuSerializer(*info);
}

const TNuSerializerClass& nu::serializerClassOf(const host::TClassInfo& info) {
    const TNuSerializerClass* const found = registry().find(info);
    if (found == nullptr) {
        throw host::Exception(host::formatMessage(messages::noSerializer, {info.name}));
    }
    return *found;
}

void nu::registerPersistentClass(const host::TClassInfo& info) {
    if (info.derivesFrom(host::classOf<host::TPersistent>)) {
        registry().registerClass(info);
    }
}
