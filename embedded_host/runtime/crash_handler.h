#pragma once
// Fatal signals (or unhandled exceptions on Windows) call whatever function
// the table's crash-handler slot holds, with a short text, before the process dies.
namespace tvr::plr::embedded {

void installCrashHandlers();
void removeCrashHandlers();

}  // namespace tvr::plr::embedded
