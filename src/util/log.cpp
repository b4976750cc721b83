#include "util/log.h"

#include <cstdio>
#include <utility>

namespace tvr::util {

namespace {

std::function<std::time_t()>& clockFunction() {
    static std::function<std::time_t()> clock;
    return clock;
}

std::time_t now() {
    const auto& clock = clockFunction();
    return clock ? clock() : std::time(nullptr);
}

std::tm utc(std::time_t when) {
    std::tm parts{};
#if defined(_WIN32)
    if (gmtime_s(&parts, &when) != 0) {
        parts = std::tm{};
    }
#else
    if (gmtime_r(&when, &parts) == nullptr) {
        parts = std::tm{};
    }
#endif
    return parts;
}

}  // namespace

Log::Log() = default;

Log::Log(std::int32_t level) : m_level(level) {
    Log* root = instance();
    m_depth = root != nullptr ? root->m_depth : -1;
}

Log::Log(const std::string& message, std::int32_t level) : m_level(level) {
    if (Log* root = instance()) {
        root->m_depth += 1;
        m_depth = root->m_depth;
        m_depthOwned = 1;
    } else {
        m_depth = 0;
    }
    write(message, level);
}

Log::~Log() {
    // For the singleton itself this finds the object being destroyed.
    if (Log* root = instance()) {
        root->m_depth -= m_depthOwned;
    }
    if (m_file.is_open()) {
        m_file << "[EOF]\n";
        m_file.close();
    }
}

std::int32_t Log::log(const std::string& message, std::int32_t level) { return write(message, level); }

std::int32_t Log::write(const std::string& message, std::int32_t level) {
    const std::int32_t effective = level < 0 ? m_level : level;
    Log* root = instance();
    if (root == nullptr || effective > root->m_level) {
        return 0;
    }
    const std::string line = formatLine(now(), effective, m_depth, message);
    root->m_buffer.write(line.data(), static_cast<std::streamsize>(line.size()));
    if (root->m_file.is_open()) {
        root->m_file.write(line.data(), static_cast<std::streamsize>(line.size()));
        // Flushed per line so the file is complete up to a crash.
        root->m_file.flush();
    }
    return 0;
}

bool Log::isEnabled(std::int32_t level) {
    const Log* root = instance();
    return root != nullptr && level <= root->m_level;
}

void Log::openFile(const std::string& path) {
    Log* root = instance();
    if (root == nullptr) {
        return;
    }
    if (root->m_file.is_open()) {
        root->m_file.close();
    }
    root->m_file.clear();
    root->m_file.open(path, std::ios::out | std::ios::trunc | std::ios::binary);
}

bool Log::isFileOpen() {
    const Log* root = instance();
    return root != nullptr && root->m_file.is_open();
}

std::string Log::contents() {
    const Log* root = instance();
    return root != nullptr ? root->m_buffer.str() : std::string();
}

bool Log::saveTo(const std::string& path) {
    std::ofstream out(path, std::ios::out | std::ios::trunc | std::ios::binary);
    if (!out.is_open()) {
        return false;
    }
    out << contents();
    out.close();
    return !out.fail();
}

void Log::setClock(std::function<std::time_t()> clock) { clockFunction() = std::move(clock); }

const char* Log::levelText(std::int32_t level) {
    switch (level) {
    case Critical:
        return "CRITICAL): ";
    case Error:
        return "ERROR): ";
    case Warning:
        return "WARNING): ";
    case Notice:
        return "NOTICE): ";
    default:
        return "";
    }
}

std::string Log::formatLine(std::time_t when, std::int32_t level, std::int32_t depth, const std::string& message) {
    const std::tm parts = utc(when);
    char stamp[64];
    const int stampLength = std::snprintf(stamp, sizeof stamp, "%d%02d%02d %02d:%02d:%02d (", parts.tm_year + 1900,
                                          parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec);
    const char* text = levelText(level);
    const std::size_t tabs = depth >= 0 ? static_cast<std::size_t>(depth) + 1 : 0;

    std::string line;
    line.reserve(static_cast<std::size_t>(stampLength) + 12 + tabs + message.size() + 1);
    line.append(stamp, static_cast<std::size_t>(stampLength > 0 ? stampLength : 0));
    line.append(text);
    line.append(tabs, '\t');
    line.append(message);
    line.push_back('\n');
    return line;
}

}  // namespace tvr::util
