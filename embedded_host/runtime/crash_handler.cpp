#include "embedded_host/runtime/crash_handler.h"

#include <csignal>
#include <cstring>

#include "embedded_host/runtime/host_table.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace tvr::plr::embedded {

namespace {

// Fixed text, no allocation: the handler runs while the process is failing.
char g_info[96];

void callSlot(const char* text) {
  std::strncpy(g_info, text, sizeof g_info - 1);
  g_info[sizeof g_info - 1] = 0;
  if (void (*handler)(char*) = hostTable().crashHandler) handler(g_info);
}

#if defined(_WIN32)
LPTOP_LEVEL_EXCEPTION_FILTER g_previous = nullptr;
bool g_installed = false;
const int kSignals[] = {SIGSEGV, SIGILL, SIGFPE, SIGABRT};
void (*g_previousSignals[sizeof kSignals / sizeof kSignals[0]])(int);

LONG WINAPI onException(EXCEPTION_POINTERS*) {
  callSlot("unhandled exception");
  return EXCEPTION_CONTINUE_SEARCH;
}

void onSignal(int sig) {
  callSlot(sig == SIGSEGV ? "fatal signal SIGSEGV" : sig == SIGABRT ? "fatal signal SIGABRT" : "fatal signal");
  std::signal(sig, SIG_DFL);
  std::raise(sig);
}
#else
const int kSignals[] = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT};
struct sigaction g_previous[sizeof kSignals / sizeof kSignals[0]];
bool g_installed = false;

void onSignal(int sig) {
  const char* text = "fatal signal";
  switch (sig) {
    case SIGSEGV: text = "fatal signal SIGSEGV"; break;
    case SIGBUS: text = "fatal signal SIGBUS"; break;
    case SIGILL: text = "fatal signal SIGILL"; break;
    case SIGFPE: text = "fatal signal SIGFPE"; break;
    case SIGABRT: text = "fatal signal SIGABRT"; break;
    default: break;
  }
  callSlot(text);
  // Die the way the signal meant to.
  std::signal(sig, SIG_DFL);
  std::raise(sig);
}
#endif

}  // namespace

void installCrashHandlers() {
  if (g_installed) return;
  g_installed = true;
#if defined(_WIN32)
  g_previous = SetUnhandledExceptionFilter(onException);
  for (std::size_t i = 0; i < sizeof kSignals / sizeof kSignals[0]; ++i) g_previousSignals[i] = std::signal(kSignals[i], onSignal);
#else
  for (std::size_t i = 0; i < sizeof kSignals / sizeof kSignals[0]; ++i) {
    struct sigaction sa;
    std::memset(&sa, 0, sizeof sa);
    sa.sa_handler = onSignal;
    sigemptyset(&sa.sa_mask);
    sigaction(kSignals[i], &sa, &g_previous[i]);
  }
#endif
}

void removeCrashHandlers() {
  if (!g_installed) return;
  g_installed = false;
#if defined(_WIN32)
  SetUnhandledExceptionFilter(g_previous);
  for (std::size_t i = 0; i < sizeof kSignals / sizeof kSignals[0]; ++i) std::signal(kSignals[i], g_previousSignals[i]);
#else
  for (std::size_t i = 0; i < sizeof kSignals / sizeof kSignals[0]; ++i) sigaction(kSignals[i], &g_previous[i], nullptr);
#endif
}

}  // namespace tvr::plr::embedded
