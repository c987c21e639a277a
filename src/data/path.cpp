#include "data/path.h"

#include <charconv>

std::optional<zend_ulong> indexOf(std::string_view key)
{
    if (key.empty() || key[0] < '0' || key[0] > '9' || (key[0] == '0' && key.size() > 1)) {
        return std::nullopt;
    }
    zend_ulong number = 0;
    const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), number);
    if (error != std::errc() || end != key.data() + key.size()) {
        return std::nullopt;
    }
    return number;
}

Key::Key(std::string_view text) : text_(text)
{
    const auto index = indexOf(text);
    isIndex_ = index.has_value();
    number_ = isIndex_ ? *index : zend_inline_hash_func(text.data(), text.size());
}

// zend_hash_str_find() with a hash that is known, which also tells the place.
const zval* Key::search(const HashTable* table) const
{
    if (HT_IS_PACKED(table)) {
        return nullptr;
    }
    const Bucket* const buckets = table->arData;
    uint32_t place = HT_HASH_EX(buckets, number_ | table->nTableMask);
    while (place != HT_INVALID_IDX) {
        const Bucket& bucket = buckets[place];
        if (holds(bucket)) {
            place_ = place;
            shared_ = ZSTR_IS_INTERNED(bucket.key) ? bucket.key : &NONE;
            return &bucket.val;
        }
        place = Z_NEXT(bucket.val);
    }
    return nullptr;
}

Path::Path(PathText text)
{
    while (!text.empty()) {
        add(text.next());
    }
}

Path::Path(const Deque<String>& keys)
{
    for (const String& key : keys) {
        add(key);
    }
}

void Path::add(std::string_view key)
{
    if (isEmpty_) {
        first_ = Key(key);
    } else {
        others_.emplace_back(key);
    }
    isEmpty_ = false;
    hasOneKey_ = others_.empty();
}

const zval* Path::walkAll(PHPInterface& data, const zval* start) const
{
    if (isEmpty_) {
        return start;
    }
    bool atFirst = true;
    auto next = others_.begin();
    return walkPath(
        start, [&] { return atFirst || next != others_.end(); },
        [&](const zval* from) {
            return std::exchange(atFirst, false) ? first_.find(data, from)
                                                 : (next++)->find(data, from);
        });
}
