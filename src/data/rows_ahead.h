// Rows of a large table that come next, fetched into the processor's cache while the
// one before them is rendered. A small table lies there anyway.
#ifndef TEMPLATE_DATA_ROWS_AHEAD_H
#define TEMPLATE_DATA_ROWS_AHEAD_H

#include "engine/headers.h"

class RowsAhead final {
public:
    RowsAhead(const HashTable* table, bool reversed)
    {
        constexpr uint32_t MANY = 2000;
        if (table->nNumUsed < MANY) {
            return;
        }
        const auto size
            = static_cast<ptrdiff_t>(HT_IS_PACKED(table) ? sizeof(zval) : sizeof(Bucket));
        const auto* rows = reinterpret_cast<const char*>(table->arData);
        begin_ = rows;
        end_ = rows + size * table->nNumUsed;
        step_ = reversed ? -size : size;
    }

    // A row in several stages, each of which needs what the one before has fetched: its
    // table, the elements of that, and their strings.
    void fetch(const zval* current) const
    {
        if (EXPECTED(step_ == 0)) {
            return;
        }
        if (const HashTable* table = rowAt(current, 12)) {
            __builtin_prefetch(table);
        }
        if (const HashTable* table = rowAt(current, 8)) {
            constexpr size_t CACHE_LINE = 64;
            const auto* elements = reinterpret_cast<const char*>(table->arData);
            for (size_t line = 0; line < 4; ++line) {
                __builtin_prefetch(elements + line * CACHE_LINE);
            }
        }
        if (const HashTable* table = rowAt(current, 4); table != nullptr && !HT_IS_PACKED(table)) {
            const uint32_t count = table->nNumUsed < 8 ? table->nNumUsed : 8;
            for (uint32_t i = 0; i < count; ++i) {
                if (Z_REFCOUNTED(table->arData[i].val)) {
                    __builtin_prefetch(Z_COUNTED(table->arData[i].val));
                }
            }
        }
    }

private:
    // The table of the row so many behind `current`; null where there is none.
    const HashTable* rowAt(const zval* current, ptrdiff_t distance) const
    {
        const char* const place = reinterpret_cast<const char*>(current) + distance * step_;
        if (place < begin_ || place >= end_) {
            return nullptr;
        }
        const auto* row = reinterpret_cast<const zval*>(place);
        return Z_TYPE_P(row) == IS_ARRAY ? Z_ARRVAL_P(row) : nullptr;
    }

    const char* begin_ = nullptr;
    const char* end_ = nullptr;
    ptrdiff_t step_ = 0;
};

#endif
