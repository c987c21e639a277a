// Paths of keys through the user data, and the one walk along them. Of what a path
// leads to, neither objects nor PHP references are looked into, wherever they stand;
// only its start may be an object.
#ifndef TEMPLATE_DATA_PATH_H
#define TEMPLATE_DATA_PATH_H

#include <optional>
#include <string_view>

#include "engine/bytes.h"
#include "engine/memory.h"
#include "module/php_interface.h"

// The number that `key` is the canonical decimal form of, from 0 up to the
// largest 64-bit number; none for "007", "-1", "+3" and the like, which are
// string keys.
std::optional<zend_ulong> indexOf(std::string_view key);

// The keys of a path as they are written, "a::b::c", first to last. A path is
// always a whole tail of its reference, so nothing needs to be copied.
class PathText final {
public:
    PathText() = default;
    explicit PathText(std::string_view text) : text_(text), atEnd_(false) {}

    bool empty() const { return atEnd_; }

    // Takes the first key off the path, which must not be empty.
    std::string_view next()
    {
        const size_t separator = text_.find("::");
        const std::string_view key = text_.substr(0, separator);
        atEnd_ = separator == std::string_view::npos;
        text_.remove_prefix(atEnd_ ? text_.size() : separator + 2);
        return key;
    }

    Deque<String> keys() const
    {
        Deque<String> keys;
        for (PathText rest = *this; !rest.empty();) {
            keys.emplace_back(rest.next());
        }
        return keys;
    }

private:
    std::string_view text_;
    // An empty path has no key, an empty text is a path of one empty key.
    bool atEnd_ = true;
};

// One step by a key as it is written. A null `from` is the root of the user data,
// which no index is looked up in.
inline const zval* findStep(PHPInterface& data, std::string_view key, const zval* from)
{
    EngineCall::current().checkTime();
    if (const auto index = indexOf(key)) {
        return data.hashIndexFind(*index, from);
    }
    return data.hashFind(key, from);
}

// The walk: `more` tells whether there is another key, and `step` goes from a value
// to what lies under it. Null when there is no such value.
template <class More, class Step>
const zval* walkPath(const zval* start, More more, Step step)
{
    const zval* current = start;
    for (bool first = true; more(); first = false) {
        if (!first && (current == nullptr || Z_TYPE_P(current) != IS_ARRAY)) {
            return nullptr;
        }
        current = step(current);
    }
    return current;
}

inline const zval* walkPath(PHPInterface& data, PathText path, const zval* start)
{
    return walkPath(
        start, [&] { return !path.empty(); },
        [&](const zval* from) { return findStep(data, path.next(), from); });
}

// A key of a path that is walked at every element: what its lookup needs is worked
// out once, and where it was found last is where it is looked for first. The key's
// text must outlive the object.
class Key final {
public:
    explicit Key(std::string_view text);

    [[gnu::always_inline]] const zval* find(PHPInterface& data, const zval* from) const
    {
        if (UNEXPECTED(isIndex_)) {
            return data.hashIndexFind(number_, from);
        }
        if (UNEXPECTED(Z_TYPE_P(from) != IS_ARRAY)) {
            return nullptr;
        }
        // Rows mostly share their keys, and have them at the same places.
        const HashTable* table = Z_ARRVAL_P(from);
        if (EXPECTED(place_ < table->nNumUsed && !HT_IS_PACKED(table))) {
            const Bucket& bucket = table->arData[place_];
            if (EXPECTED(holds(bucket))) {
                return &bucket.val;
            }
        }
        return search(table);
    }

private:
    // Rows made by a program share their keys, each row of decoded data has a string of
    // its own for the same key. The key of an element that was taken out is gone.
    [[gnu::always_inline]] bool holds(const Bucket& bucket) const
    {
        return Z_TYPE(bucket.val) != IS_UNDEF
            && (bucket.key == shared_ || (bucket.h == number_ && hasText(bucket.key)));
    }
    [[gnu::always_inline]] bool hasText(const zend_string* key) const
    {
        return key != nullptr && ZSTR_LEN(key) == text_.size()
            && sameBytes(ZSTR_VAL(key), text_.data(), text_.size());
    }
    const zval* search(const HashTable* table) const;

    std::string_view text_;
    // The index, or the hash of the text.
    zend_ulong number_;
    bool isIndex_;
    mutable uint32_t place_ = UINT32_MAX;
    // The string that was found last, if PHP keeps it until the request ends: another one
    // could be freed, and its place be another text's.
    mutable const zend_string* shared_ = &NONE;
    static inline const zend_string NONE{};
};

// A path of such keys; without one it leads nowhere else.
class Path final {
public:
    Path() = default;
    explicit Path(PathText text);
    // The keys themselves must outlive the object.
    explicit Path(const Deque<String>& keys);

    // From `start`, which must not be null.
    [[gnu::always_inline]] const zval* walk(PHPInterface& data, const zval* start) const
    {
        // Most paths have a single key.
        return EXPECTED(hasOneKey_) ? first_.find(data, start) : walkAll(data, start);
    }

private:
    void add(std::string_view key);
    const zval* walkAll(PHPInterface& data, const zval* start) const;

    Key first_{{}};
    Vector<Key> others_;
    bool isEmpty_ = true;
    bool hasOneKey_ = false;
};

#endif
