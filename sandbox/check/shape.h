#pragma once

#include <span>
#include <string>

#include "sandbox/check/jsontext.h"

/// What an object of a file may hold.
namespace sandbox::check {

enum class Holds {
    text,
    number, ///< a whole number, not below 0
    whole,  ///< a whole number
    flag,
    object,  ///< of the member's shape
    list,    ///< of objects of the member's shape
    texts,   ///< an array of texts
    textMap, ///< an object of texts
    numberMap,
    names,         ///< "all" or an array of texts
    textsOrNumber, ///< texts or how many they are
    numbers,       ///< a number or an array of them
    record,        ///< a number, an object or "none"
    patch,         ///< an object that is merged into one of the shape: null removes a member
    textOrNull,
    anyObject,
    anyList,
};

struct Shape;

using Words = std::span<const char* const>;

struct Member {
    const char* name;
    Holds holds;
    bool isNeeded = false;
    const Shape* shape = nullptr;
    Words words{}; ///< the only texts that it takes; none for any text
    const char* wordsCode = "value-unknown";
};

struct Shape {
    const char* what; ///< in messages
    std::span<const Member> members;
    bool isOpen = false; ///< may have further members, of which nothing is known
};

/// Finds all that is not of the shape: members that are not in it or are missing, values of
/// another kind. `comment` is always among the members.
void checkShape(const JsonText& json, const std::string& pointer, const Shape& shape,
                Mistakes& mistakes);

} // namespace sandbox::check
