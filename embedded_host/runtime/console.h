#pragma once
// The host's console and the dialogs it showed. Every line is journaled too.
#include <string>
#include <vector>

namespace tvr::plr::embedded {

class Journal;

class Console {
 public:
  explicit Console(Journal& journal) : journal_(journal) {}

  void print(const std::string& line);
  // A dialog is gone once closed; the console keeps what it said.
  void dialog(const std::string& text);

  const std::vector<std::string>& lines() const { return lines_; }
  const std::vector<std::string>& dialogs() const { return dialogs_; }
  bool echo = false;  // also print console lines and dialogs to stdout

 private:
  Journal& journal_;
  std::vector<std::string> lines_;
  std::vector<std::string> dialogs_;
};

// A line on the running host's console (nothing when no host runs).
void consolePrint(const std::string& line);

}  // namespace tvr::plr::embedded
