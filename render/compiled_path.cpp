#include "render/compiled_path.h"

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

const zval* CompiledPath::Step::search(const HashTable* table) const
{
    // What has been found once knows its hash.
    const zval* found = foundKey_.get() != nullptr
        ? zend_hash_find_known_hash(table, foundKey_.get())
        : zend_hash_str_find(table, key_.data(), key_.size());
    if (found != nullptr) {
        // A bucket begins with its value.
        const auto* bucket = reinterpret_cast<const Bucket*>(found);
        static_assert(offsetof(Bucket, val) == 0);
        foundKey_ = EngineString(zend_string_copy(bucket->key));
        place_ = static_cast<uint32_t>(bucket - table->arData);
    }
    return found;
}

CompiledPath::CompiledPath(PathText path)
{
    while (!path.empty()) {
        add(path.next());
    }
}

CompiledPath::CompiledPath(const std::deque<std::string>& path)
{
    for (const std::string& key : path) {
        add(key);
    }
}

void CompiledPath::add(std::string_view key)
{
    if (!first_) {
        first_.emplace(key);
    } else {
        others_.emplace_back(key);
    }
}
