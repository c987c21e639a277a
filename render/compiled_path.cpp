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

CompiledPath::Step::Step(std::string_view key)
{
    if (const auto index = indexOf(key)) {
        index_ = *index;
        return;
    }
    key_ = EngineString(zend_string_init(key.data(), key.size(), true));
    zend_string_hash_val(key_.get());
}

const zval* CompiledPath::Step::search(const HashTable* table) const
{
    const zval* found = zend_hash_find_known_hash(table, key_.get());
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
        steps_.emplace_back(path.next());
    }
}

CompiledPath::CompiledPath(const std::deque<std::string>& path) : steps_(path.begin(), path.end())
{
}
