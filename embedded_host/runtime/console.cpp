#include "embedded_host/runtime/console.h"

#include <cstdio>

#include "embedded_host/runtime/journal.h"

namespace tvr::plr::embedded {

void Console::print(const std::string& line) {
  lines_.push_back(line);
  journal_.add("GePrint", line);
  if (echo) std::printf("%s\n", line.c_str());
}

void Console::dialog(const std::string& text) {
  dialogs_.push_back(text);
  lines_.push_back(text);
  journal_.add("MessageDialog", text);
  if (echo) std::printf("[dialog] %s\n", text.c_str());
}

}  // namespace tvr::plr::embedded
