// A path of keys with what each lookup needs worked out once: whether a key is
// an index, and its hash. For paths that are walked at every element.
#ifndef TEMPLATE_RENDER_COMPILED_PATH_H
#define TEMPLATE_RENDER_COMPILED_PATH_H

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "module/engine.h"
#include "module/php_interface.h"
#include "template/reference.h"

// The number that `key` is the canonical decimal form of, from 0 up to the
// largest 64-bit number; none for "007", "-1", "+3" and the like, which are
// string keys.
std::optional<zend_ulong> indexOf(std::string_view key);

class CompiledPath final {
public:
    // The path's text, or the keys, must outlive the object.
    explicit CompiledPath(PathText path);
    explicit CompiledPath(const std::deque<std::string>& path);

    // The element that the path leads to from `start`, which must not be null;
    // null when there is none. Same rules as Template::findVariable().
    const zval* walk(PHPInterface& phpInterface, const zval* start) const
    {
        if (!first_) {
            return start;
        }
        const zval* current = first_->find(phpInterface, start);
        for (const Step& step : others_) {
            // Every step but the first must start from an array.
            if (current == nullptr || Z_TYPE_P(current) != IS_ARRAY) {
                return nullptr;
            }
            current = step.find(phpInterface, current);
        }
        return current;
    }

private:
    class Step {
    public:
        explicit Step(std::string_view key) : key_(key), index_(indexOf(key)) {}

        const zval* find(PHPInterface& phpInterface, const zval* from) const
        {
            if (index_) {
                return phpInterface.hashIndexFind(*index_, from);
            }
            if (Z_TYPE_P(from) != IS_ARRAY) {
                return nullptr;
            }
            // Rows mostly share their keys, and have them at the same places.
            const HashTable* table = Z_ARRVAL_P(from);
            if (EXPECTED(place_ < table->nNumUsed && !HT_IS_PACKED(table))) {
                const Bucket& bucket = table->arData[place_];
                if (EXPECTED(bucket.key == foundKey_.get() && Z_TYPE(bucket.val) != IS_UNDEF)) {
                    return &bucket.val;
                }
            }
            return search(table);
        }

    private:
        const zval* search(const HashTable* table) const;

        std::string_view key_;
        std::optional<zend_ulong> index_;
        // Where the key was found last, and the engine's string that it was:
        // held, so that no other string can take its address.
        mutable EngineString foundKey_;
        mutable uint32_t place_ = UINT32_MAX;
    };

    void add(std::string_view key);

    // Most paths have a single key.
    std::optional<Step> first_;
    std::vector<Step> others_;
};

#endif
