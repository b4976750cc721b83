#include "sample_core/command_channel.h"

#include "sample_core/sample_core.h"

namespace tvr::plr::core::sample {

namespace {

std::vector<VerbEntry> allVerbs() {
    std::vector<VerbEntry> verbs = basicVerbs();
    for (const VerbEntry& v : nodeVerbs()) verbs.push_back(v);
    for (const VerbEntry& v : stateVerbs()) verbs.push_back(v);
    for (const VerbEntry& v : undoVerbs()) verbs.push_back(v);
    for (const VerbEntry& v : interfaceVerbs()) verbs.push_back(v);
    return verbs;
}

CommandResult help(SampleCore&, const std::vector<std::string>&) {
    CommandResult result;
    for (const VerbEntry& v : allVerbs()) result.text += std::string(v.name) + " " + v.usage + "\n";
    return result;
}

}  // namespace

std::vector<VerbEntry> basicVerbs() {
    return {
        {"help", "- lists the verbs the core understands", &help},
    };
}

bool splitWords(const std::string& line, std::vector<std::string>& words, std::string& error) {
    words.clear();
    std::size_t i = 0;
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (i < line.size()) {
        while (i < line.size() && blank(line[i])) ++i;
        if (i >= line.size()) break;
        std::string word;
        if (line[i] == '"') {
            const std::size_t close = line.find('"', i + 1);
            if (close == std::string::npos) {
                error = "unterminated quote at column " + std::to_string(i + 1);
                return false;
            }
            word = line.substr(i + 1, close - i - 1);
            i = close + 1;
        } else {
            while (i < line.size() && !blank(line[i])) word += line[i++];
        }
        words.push_back(word);
    }
    return true;
}

CommandResult runCommand(SampleCore& core, const std::string& line) {
    std::vector<std::string> words;
    std::string error;
    if (!splitWords(line, words, error)) return commandError(error);
    if (words.empty()) return commandError("no verb given (try help)");
    const std::string verb = words.front();
    words.erase(words.begin());
    for (const VerbEntry& v : allVerbs()) {
        if (verb == v.name) return v.run(core, words);
    }
    return commandError("unknown verb \"" + verb + "\" (try help)");
}

}  // namespace tvr::plr::core::sample
