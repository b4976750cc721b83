#pragma once
// Command and message plug-ins, icons and the Register*Plugin calls.
#include "host_api/c4d_nodedata.h"

class CommandData : public BaseData {
public:
    virtual Bool Execute(BaseDocument* doc) {
        (void)doc;
        return true;
    }
    virtual Bool ExecuteSubID(BaseDocument* doc, LONG subid) {
        (void)doc;
        (void)subid;
        return true;
    }
    virtual Bool ExecuteOptionID(BaseDocument* doc, LONG plugid, LONG subid) {
        (void)doc;
        (void)plugid;
        (void)subid;
        return true;
    }
    virtual LONG GetState(BaseDocument* doc) {
        (void)doc;
        return 1;
    }  // enabled
    virtual Bool RestoreLayout(void* secret) {
        (void)secret;
        return false;
    }
    virtual Bool GetSubContainer(BaseDocument* doc, BaseContainer& submenu) {
        (void)doc;
        (void)submenu;
        return false;
    }
    virtual Bool Message(LONG type, void* data) {
        (void)type;
        (void)data;
        return true;
    }
};

class MessageData : public BaseData {
public:
    // Core messages: events posted with SpecialEventAdd, parameters under BFM_CORE_PAR1/2.
    virtual Bool CoreMessage(LONG id, const BaseContainer& bc) = 0;
};

// An icon named by its file; the host only records the name.
class BaseBitmap {
public:
    explicit BaseBitmap(const Filename& file) : file_(file) {}
    Filename GetFilename() const { return file_; }

private:
    Filename file_;
};

class AutoBitmap {
public:
    explicit AutoBitmap(const String& file) : bitmap_(Filename(file)) {}
    operator BaseBitmap*() { return &bitmap_; }

private:
    BaseBitmap bitmap_;
};

inline Bool RegisterCommandPlugin(LONG id, const String& name, LONG info, BaseBitmap* icon, const String& help,
                                  CommandData* data) {
    C4D_HostTable* t = C4DOS();
    return t && t->registerCommandPlugin ? t->registerCommandPlugin(id, name, info, icon, help, data) : false;
}

inline Bool RegisterSceneHookPlugin(LONG id, const String& name, LONG info, DataAllocator* allocator, LONG priority,
                                    LONG diskLevel, void* emulation = nullptr) {
    C4D_HostTable* t = C4DOS();
    return t && t->registerSceneHookPlugin
               ? t->registerSceneHookPlugin(id, name, info, allocator, priority, diskLevel, emulation)
               : false;
}

inline Bool RegisterTagPlugin(LONG id, const String& name, LONG info, DataAllocator* allocator,
                              const String& description, BaseBitmap* icon, LONG diskLevel) {
    C4D_HostTable* t = C4DOS();
    return t && t->registerTagPlugin ? t->registerTagPlugin(id, name, info, allocator, description, icon, diskLevel)
                                     : false;
}

inline Bool RegisterMessagePlugin(LONG id, const String& name, LONG info, MessageData* data) {
    C4D_HostTable* t = C4DOS();
    return t && t->registerMessagePlugin ? t->registerMessagePlugin(id, name, info, data) : false;
}
