#pragma once
// The table handed to modules. It has static storage so that a module's late
// calls (after the host has gone) find functions that quietly do nothing.
#include "host_api/c4d.h"

namespace tvr::plr::embedded {

C4D_HostTable& hostTable();
// Every slot back to the host's own function; the first word set to apiVersion.
void fillHostTable(LONG apiVersion);
// The host's own crash handler (the slot's initial value): prints the text to stderr.
void defaultCrashHandler(char* info);

class PluginRegistry;
// Calls every message plug-in's CoreMessage with p1 under 'Mci1' and p2 under 'Mci2'.
void deliverCoreMessage(const PluginRegistry& plugins, LONG id, VULONG p1, VULONG p2);

}  // namespace tvr::plr::embedded
