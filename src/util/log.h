// The trace log.
//
// One Log, the singleton, keeps every line in memory and, once a file has been
// opened, writes it there too. Other Log objects live on the stack: a plain
// logger writes at a fixed level, a scoped entry logs its message at once and
// indents whatever is logged while it lives. Lines look like
//   20240307 09:05:00 (NOTICE): \tBegin undo
// with a UTC time stamp, the level text and one tab per nesting level.
#pragma once

#include <cstdint>
#include <ctime>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

#include "util/singleton.h"

namespace tvr::util {

class Log : public Singleton<Log> {
public:
    enum Level : std::int32_t { Critical = 0, Error = 1, Warning = 2, Notice = 3 };

    // Plain logger: writes at `level` (when given -1) and at the current depth.
    explicit Log(std::int32_t level);
    // Scoped entry: raises the depth, logs `message` at `level`, lowers it again on
    // destruction. Entries must end in reverse order of creation.
    Log(const std::string& message, std::int32_t level);
    ~Log() override;

    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    virtual std::int32_t log(const std::string& message, std::int32_t level);
    // A negative level means this object's own level. Always returns 0.
    virtual std::int32_t write(const std::string& message, std::int32_t level);

    // Whether a message of `level` would be kept (level <= the singleton's threshold).
    static bool isEnabled(std::int32_t level);

    // On the singleton this is the threshold; on other objects their default level.
    void setLevel(std::int32_t level) { m_level = level; }
    std::int32_t level() const { return m_level; }
    std::int32_t depth() const { return m_depth; }

    // Operations of the singleton's file and buffer.
    // Closes any open log file, then opens `path` truncated; on failure logging
    // goes on into the buffer only.
    static void openFile(const std::string& path);
    static bool isFileOpen();
    static std::string contents();
    // Writes the whole buffer to `path` (truncated); false if it cannot be opened.
    static bool saveTo(const std::string& path);

    // The clock behind the time stamps; an empty function restores the real one.
    static void setClock(std::function<std::time_t()> clock);

    // The level text of a line ("NOTICE): "); empty above 3 and below 0.
    static const char* levelText(std::int32_t level);
    // One complete line as write() would produce it at `depth`.
    static std::string formatLine(std::time_t when, std::int32_t level, std::int32_t depth, const std::string& message);

private:
    friend class Singleton<Log>;
    Log();

    std::ofstream m_file;
    std::stringstream m_buffer;
    std::int32_t m_depthOwned = 0;
    std::int32_t m_depth = -1;
    std::int32_t m_level = 3;
};

}  // namespace tvr::util
