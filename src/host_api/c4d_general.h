#pragma once
// Host-wide calls: documents, events, console, dialogs, version, preferences.
#include "host_api/c4d_basedocument.h"

inline BaseDocument* GetActiveDocument() {
    C4D_HostTable* t = C4DOS();
    return t && t->getActiveDocument ? t->getActiveDocument() : nullptr;
}
inline BaseDocument* GetFirstDocument() {
    C4D_HostTable* t = C4DOS();
    return t && t->getFirstDocument ? t->getFirstDocument() : nullptr;
}
// Adds a document to the host's list (the host owns it from then on).
inline void InsertBaseDocument(BaseDocument* doc) {
    C4D_HostTable* t = C4DOS();
    if (t && t->insertBaseDocument) t->insertBaseDocument(doc);
}
inline void SetActiveDocument(BaseDocument* doc) {
    C4D_HostTable* t = C4DOS();
    if (t && t->setActiveDocument) t->setActiveDocument(doc);
}
inline void EventAdd(LONG flags = 0) {
    C4D_HostTable* t = C4DOS();
    if (t && t->eventAdd) t->eventAdd(flags);
}
inline Bool DrawViews(LONG flags, BaseDraw* bd = nullptr) {
    C4D_HostTable* t = C4DOS();
    return t && t->drawViews ? t->drawViews(flags, bd) : false;
}
// Delivered at once to every message plug-in.
inline Bool GeSyncMessage(LONG messageId, LONG destId = 0, VULONG p1 = 0, VULONG p2 = 0) {
    C4D_HostTable* t = C4DOS();
    return t && t->geSyncMessage ? t->geSyncMessage(messageId, destId, p1, p2) : false;
}
// Queued; the next event-loop cycle delivers it to every message plug-in.
inline void SpecialEventAdd(LONG messageId, VULONG p1 = 0, VULONG p2 = 0) {
    C4D_HostTable* t = C4DOS();
    if (t && t->specialEventAdd) t->specialEventAdd(messageId, p1, p2);
}
inline void GePrint(const String& text) {
    C4D_HostTable* t = C4DOS();
    if (t && t->gePrint) t->gePrint(text);
}
inline void MessageDialog(const String& text) {
    C4D_HostTable* t = C4DOS();
    if (t && t->messageDialog) t->messageDialog(text);
}
inline void FreeResource() {
    C4D_HostTable* t = C4DOS();
    if (t && t->freeResource) t->freeResource();
}
inline void StopAllThreads() {
    C4D_HostTable* t = C4DOS();
    if (t && t->stopAllThreads) t->stopAllThreads();
}
inline LONG GetC4DVersion() {
    C4D_HostTable* t = C4DOS();
    return t && t->getC4DVersion ? t->getC4DVersion() : 0;
}
inline BaseContainer* GetWorldContainerInstance() {
    C4D_HostTable* t = C4DOS();
    return t && t->getWorldContainerInstance ? t->getWorldContainerInstance() : nullptr;
}
