// XML element model: one Element class carries tags, texts and comments; Tag,
// TagWithData, Text and Data are Element with a fixed kind and constructor.
// Text is 8-bit, handled byte by byte; no character encoding is interpreted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "util/xml/attributes.h"
#include "util/xml/block_pool.h"

namespace tvr::util::xml {

// Element kinds. Any other value writes as nothing; 0 marks an empty element.
enum Kind : std::uint32_t { kEmpty = 0, kTag = 1, kText = 2, kComment = 4 };

class Element {
public:
    using Attributes = xml::Attributes;
    using Children = std::vector<std::unique_ptr<Element>, BlockAllocator<std::unique_ptr<Element>>>;

    // An empty element: kind 0, no name, no attributes, no children.
    Element();
    Element(const Element& other);
    Element(Element&& other) noexcept;

    // Deep copy; safe when `other` is this element or one of its descendants.
    virtual Element& operator=(const Element& other);
    // Replaces the name (the text, for text and comment nodes) and returns it.
    virtual const std::string& setName(const std::string& name);
    // Appends a deep copy of `child` and returns that copy; an empty element is
    // not added and this element is returned instead.
    virtual Element* addChild(const Element& child);
    // Frees the subtree without recursion, so any depth is safe.
    virtual ~Element();

    // Elements live in pooled blocks.
    static void* operator new(std::size_t size);
    static void operator delete(void* block, std::size_t size) noexcept;

    // An element of any kind with the given name (for texts and comments, the text).
    Element(std::uint32_t kind, std::string name);

    Element& operator=(Element&& other) noexcept;

    // Like addChild, but takes the child's contents instead of copying them.
    Element* appendChild(Element&& child);
    // Takes ownership of `child`; null or empty children are dropped (and
    // this element is returned).
    Element* adoptChild(std::unique_ptr<Element> child);
    // Takes ownership of a whole list at once, after the children already
    // there; null or empty ones are dropped.
    void adoptChildren(Children children);

    std::uint32_t kind() const { return kind_; }
    const std::string& name() const { return name_; }
    bool isEmpty() const { return kind_ == kEmpty; }

    const Attributes& attributes() const { return attributes_; }
    Attributes& attributes() { return attributes_; }
    bool hasAttribute(const std::string& name) const;
    // The attribute's value, or an empty string when it is absent.
    const std::string& attribute(const std::string& name) const;
    void setAttribute(const std::string& name, const std::string& value);

    const Children& children() const { return children_; }
    std::size_t childCount() const { return children_.size(); }
    Element* childAt(std::size_t index);
    const Element* childAt(std::size_t index) const;
    // The first child tag with this name, or null.
    Element* child(const std::string& name);
    const Element* child(const std::string& name) const;
    // The text of an element: its first child's text when that child is a
    // text node, otherwise empty.
    const std::string& text() const;
    // text() of the first child tag with this name; empty when there is none.
    const std::string& childText(const std::string& name) const;
    // Removes and frees a direct child; false when it is not a child of this.
    bool removeChild(const Element* child);
    bool removeChildAt(std::size_t index);
    // Detaches a direct child and hands it over; null when out of range.
    std::unique_ptr<Element> takeChildAt(std::size_t index);
    void clearChildren();

    // The text form of this element and its subtree.
    std::string toString(const std::string& newline, const std::string& indent, const std::string& prefix) const;
    void appendTo(std::string& text, const std::string& newline, const std::string& indent,
                  const std::string& prefix) const;
    // Writes "<?xml version=\"1.0\"?>\n" and the tree with "\n" and "\t"; false on
    // any stream failure.
    bool writeFile(const std::string& path) const;

private:
    Attributes attributes_;
    Children children_;
    std::string name_;
    std::uint32_t kind_ = kEmpty;
};

// Deep structural equality: kind, name, attributes and children in order.
bool operator==(const Element& a, const Element& b);
inline bool operator!=(const Element& a, const Element& b) { return !(a == b); }

class Tag : public Element {
public:
    explicit Tag(const std::string& name);
    using Element::operator=;
};

// A tag holding one text child made from `value`.
class TagWithData : public Element {
public:
    TagWithData(const std::string& name, const std::string& value);
    using Element::operator=;
};

class Text : public Element {
public:
    explicit Text(const std::string& text);
    using Element::operator=;
};

// A copy of another element, keeping that element's kind.
class Data : public Element {
public:
    explicit Data(const Element& other);
    using Element::operator=;
};

// Letters, digits, space and punctuation are kept, except '&' -> "&#38;" and
// '<' -> "&#60;"; every other byte becomes "&#<decimal value>;".
std::string escape(const std::string& text);
void appendEscaped(std::string& out, const char* data, std::size_t size);

// Reads "&#<digits>" and "&#x<hex>" references, each followed by one skipped
// byte (meant to be ';'). Named entities pass through unchanged.
std::string unescape(const std::string& text);
void appendUnescaped(std::string& out, const char* data, std::size_t size);

}  // namespace tvr::util::xml
