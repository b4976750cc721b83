// Text form of elements. The walk keeps its own stack so that any depth of
// tree can be written.
#include <fstream>
#include <vector>

#include "util/xml/element.h"

namespace tvr::util::xml {

namespace {

void appendAttributes(std::string& out, const Element::Attributes& attributes) {
    for (const auto& [name, value] : attributes) {
        out += ' ';
        out += name;
        out += '=';
        const bool hasDouble = value.find('"') != std::string::npos;
        const bool hasSingle = value.find('\'') != std::string::npos;
        if (hasDouble && !hasSingle) {
            out += '\'';
            appendEscaped(out, value.data(), value.size());
            out += '\'';
        } else if (hasDouble) {
            out += '"';
            for (char c : escape(value)) {
                if (c == '"')
                    out += "&#34;";
                else
                    out += c;
            }
            out += '"';
        } else {
            out += '"';
            appendEscaped(out, value.data(), value.size());
            out += '"';
        }
    }
}

// Texts and comments; other kinds that are not tags write as nothing.
void appendLeaf(std::string& out, const Element& e, const char* prefix, std::size_t prefixLen) {
    if (e.kind() == kText) {
        appendEscaped(out, e.name().data(), e.name().size());
    } else if (e.kind() == kComment) {
        out.append(prefix, prefixLen);
        out += "<!-- ";
        appendEscaped(out, e.name().data(), e.name().size());
        out += "-- >";  // the space is deliberate: files of this program end comments so
    }
}

}  // namespace

void Element::appendTo(std::string& out, const std::string& newline, const std::string& indent,
                       const std::string& prefix) const {
    if (kind_ != kTag) {
        appendLeaf(out, *this, prefix.data(), prefix.size());
        return;
    }
    struct Frame {
        const Element* element;
        std::size_t next;
        std::size_t prefixLen;
        bool textOnly;
    };
    std::vector<Frame> stack;
    // Every level's prefix is a leading part of this string.
    std::string prefixes = prefix;

    // Writes the start of a tag; pushes a frame when it has children.
    auto open = [&](const Element& e, std::size_t prefixLen) {
        out.append(prefixes.data(), prefixLen);
        out += '<';
        appendEscaped(out, e.name_.data(), e.name_.size());
        appendAttributes(out, e.attributes_);
        if (e.children_.empty()) {
            out += "/>";
            return;
        }
        out += '>';
        const bool textOnly = e.children_.front()->kind_ == kText;
        if (!textOnly) out += newline;
        stack.push_back({&e, 0, prefixLen, textOnly});
    };

    open(*this, prefix.size());
    while (!stack.empty()) {
        Frame& top = stack.back();
        const Children& kids = top.element->children_;
        if (top.next < kids.size()) {
            const Element& c = *kids[top.next];
            if (top.textOnly && top.next > 0 && c.kind_ == kText &&
                kids[top.next - 1]->kind_ == kText)
                out += ' ';
            ++top.next;
            const bool textOnly = top.textOnly;
            const std::size_t childPrefixLen = top.prefixLen + indent.size();
            if (prefixes.size() < childPrefixLen) prefixes += indent;
            if (c.kind_ == kTag) {
                const std::size_t depth = stack.size();
                open(c, childPrefixLen);
                if (stack.size() > depth) continue;  // its end adds the newline
            } else {
                appendLeaf(out, c, prefixes.data(), childPrefixLen);
            }
            if (!textOnly) out += newline;
        } else {
            if (!top.textOnly) out.append(prefixes.data(), top.prefixLen);
            out += "</";
            appendEscaped(out, top.element->name_.data(), top.element->name_.size());
            out += '>';
            stack.pop_back();
            if (!stack.empty() && !stack.back().textOnly) out += newline;
        }
    }
}

std::string Element::toString(const std::string& newline, const std::string& indent,
                              const std::string& prefix) const {
    std::string out;
    appendTo(out, newline, indent, prefix);
    return out;
}

bool Element::writeFile(const std::string& path) const {
    // Binary, so that the file holds exactly the bytes of the text form.
    std::ofstream file(path, std::ios::out | std::ios::binary | std::ios::trunc);
    if (!file) return false;
    file << "<?xml version=\"1.0\"?>\n";
    if (!file) return false;
    file << toString("\n", "\t", "");
    if (!file) return false;
    file.close();
    return !file.fail();
}

}  // namespace tvr::util::xml
