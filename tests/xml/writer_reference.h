// The plain writer: std::string appends, one character at a time where it
// escapes. The fast writer must produce the same text for every tree.
#pragma once

#include <string>
#include <vector>

#include "util/xml/element.h"

namespace tvr::util::xml::reference {

inline void escaped(std::string& out, const std::string& text) {
    for (const char ch : text) {
        const auto c = static_cast<unsigned char>(ch);
        if (c >= 32 && c <= 126 && c != '&' && c != '<')
            out += ch;
        else
            out += "&#" + std::to_string(c) + ";";
    }
}

inline void attributes(std::string& out, const Element::Attributes& attributes) {
    for (const auto& [name, value] : attributes) {
        out += ' ' + name + '=';
        const bool hasDouble = value.find('"') != std::string::npos;
        const bool hasSingle = value.find('\'') != std::string::npos;
        std::string text;
        escaped(text, value);
        if (hasDouble && !hasSingle) {
            out += '\'' + text + '\'';
        } else {
            std::string quoted;
            for (const char c : text) quoted += c == '"' ? std::string("&#34;") : std::string(1, c);
            out += '"' + quoted + '"';
        }
    }
}

inline void write(std::string& out, const Element& e, const std::string& newline, const std::string& indent,
                  const std::string& prefix) {
    if (e.kind() == kText) {
        escaped(out, e.name());
    } else if (e.kind() == kComment) {
        out += prefix + "<!-- ";
        escaped(out, e.name());
        out += "-- >";
    } else if (e.kind() == kTag) {
        out += prefix + '<';
        escaped(out, e.name());
        attributes(out, e.attributes());
        if (e.childCount() == 0) {
            out += "/>";
            return;
        }
        out += '>';
        // A tag whose first child is a text writes its children on one line.
        const bool textOnly = e.childAt(0)->kind() == kText;
        if (!textOnly) out += newline;
        for (std::size_t k = 0; k < e.childCount(); ++k) {
            const Element& c = *e.childAt(k);
            if (textOnly && k > 0 && c.kind() == kText && e.childAt(k - 1)->kind() == kText) out += ' ';
            write(out, c, newline, indent, prefix + indent);
            if (!textOnly) out += newline;
        }
        if (!textOnly) out += prefix;
        out += "</";
        escaped(out, e.name());
        out += '>';
    }
}

}  // namespace tvr::util::xml::reference
