// JSON building blocks of scene files: byte-exact strings, numbers that keep
// their bits (non-finite ones included), and a reader that checks every value
// it takes and says where a file went wrong.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace tvr::plr::embedded::scenefile {

using Json = nlohmann::json;

// Texts are arbitrary bytes: valid UTF-8 is written as a JSON string, anything
// else as {"bytes": "<base64>"}.
Json encodeBytes(const std::string& bytes);
bool isValidUtf8(const std::string& bytes);
// The host's own base64, apart from the module's on purpose: the real host shares no code with the module.
std::string base64Encode(const std::string& bytes);
// False on a character outside the alphabet or bad padding.
bool base64Decode(const std::string& text, std::string* bytes);

// JSON has no NaN or infinity; those are written as "nan", "inf", "-inf".
Json encodeNumber(double value);

// Thrown by Reader on the first value of the wrong shape; what() names the
// place ("objects[2].tags[0].type") and what was expected there.
class FormatError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Walks a parsed file keeping the path to the current value for messages.
class Reader {
public:
    // Entering a member or an element; the scope leaves it again.
    class Scope {
    public:
        Scope(Reader& r, const char* key) : r_(r) { r_.path_.push_back({key, 0}); }
        Scope(Reader& r, std::size_t index) : r_(r) { r_.path_.push_back({nullptr, index}); }
        ~Scope() { r_.path_.pop_back(); }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        Reader& r_;
    };

    [[noreturn]] void fail(const std::string& what) const;
    std::string path() const;

    const Json& object(const Json& v);
    const Json& array(const Json& v);
    const Json& array(const Json& v, std::size_t size);
    // The member, failing when it is missing.
    const Json& member(const Json& obj, const char* key);
    // The member or null when absent.
    const Json* optional(const Json& obj, const char* key);

    bool boolean(const Json& v);
    std::int32_t int32(const Json& v);
    std::int64_t int64(const Json& v);
    double number(const Json& v);
    float real(const Json& v);  // a number that must fit single precision
    std::string bytes(const Json& v);
    const std::string& text(const Json& v);

    // Visits each element of an optional array member, each in its own scope.
    template <class Visit>
    void each(const Json& obj, const char* key, Visit&& visit) {
        const Json* v = optional(obj, key);
        if (!v) return;
        Scope sc(*this, key);
        array(*v);
        for (std::size_t i = 0; i < v->size(); ++i) {
            Scope e(*this, i);
            visit((*v)[i]);
        }
    }

    // Member shortcuts that step into the member for the message.
    std::int32_t int32(const Json& obj, const char* key);
    double number(const Json& obj, const char* key);
    std::string bytes(const Json& obj, const char* key);

private:
    struct Step {
        const char* key;
        std::size_t index;
    };
    std::vector<Step> path_;
};

}  // namespace tvr::plr::embedded::scenefile
