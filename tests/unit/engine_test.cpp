// The engine's side of a call: its ways out, its limits, and what is held.
#include "data/held_table.h"
#include "engine/stack.h"

#include "fixture.h"

namespace {

struct Flag {
    bool& raised;
    ~Flag() { raised = true; }
};

// The tests go on after a fatal error.
void forgetFatalError()
{
    CG(unclean_shutdown) = false;
}

}

TEST(EngineCall, TurnsAFatalErrorIntoUnwinding)
{
    EngineCall call;
    bool unwound = false;
    EXPECT_EQ(outcome([&] {
        const Flag flag{unwound};
        call.run([] { zend_bailout(); });
        return "went on";
    }),
        "abandoned");
    EXPECT_TRUE(unwound && call.fatal());
    // It stays over, and destructors are still served.
    bool ran = false;
    EXPECT_THROW(call.leaveIfAbandoned(), CallAbandoned);
    call.attempt([&] { ran = true; });
    EXPECT_TRUE(ran && call.fatal());
    forgetFatalError();
}

TEST(EngineCall, GuardsWithinGuards)
{
    EngineCall outer, inner;
    outer.attempt([&] { inner.attempt([] { zend_bailout(); }); });
    EXPECT_TRUE(inner.fatal());
    EXPECT_FALSE(outer.fatal());
    forgetFatalError();
}

TEST(EngineCall, LeavesWhenAPhpExceptionIsPending)
{
    EngineCall call;
    EXPECT_THROW(
        call.run([] { zend_eval_string("throw new Exception;", nullptr, "test"); }), CallAbandoned);
    EXPECT_FALSE(call.fatal());
    zend_clear_exception();
    EXPECT_NO_THROW(call.run([] {}));
}

TEST(CallMemory, IsPhpsAndEndsWithTheCall)
{
    if (!is_zend_mm()) {
        GTEST_SKIP() << "PHP counts no memory without its own allocator.";
    }
    constexpr size_t MEGABYTE = 1024 * 1024;
    const size_t before = zend_memory_usage(false);
    {
        const Call call;
        Vector<String> texts;
        for (int i = 0; i < 10'000; ++i) {
            texts.emplace_back(1000, 'x');
        }
        EXPECT_GE(zend_memory_usage(false), before + 10 * MEGABYTE);
        const size_t held = zend_memory_usage(false);
        {
            // Thrown away before the call ends; what outlives it was there before.
            const CallMemory inner(EngineCall::current());
            texts.pop_back();
            const String large(20 * MEGABYTE, 'x');
            EXPECT_GE(zend_memory_usage(false), held + 20 * MEGABYTE);
        }
        EXPECT_LT(zend_memory_usage(false), held + MEGABYTE);
        EXPECT_EQ(texts.back(), String(1000, 'x'));
    }
    EXPECT_LT(zend_memory_usage(false), before + MEGABYTE);
}

TEST(CallMemory, HandsOutEveryByteOnce)
{
    const Call call;
    std::vector<std::pair<char*, size_t>> pieces;
    CallMemory& memory = *call.engine.memory;
    for (size_t i = 0; i < 2000; ++i) {
        const size_t size = i * 7919 % (i % 50 == 0 ? 100'000 : 300) + 1;
        auto* piece = static_cast<char*>(memory.allocate(size));
        std::memset(piece, static_cast<int>(i % 251), size);
        if (i % 3 == 0) {
            memory.deallocate(piece, size);
        } else {
            pieces.emplace_back(piece, size);
        }
    }
    size_t wrong = 0;
    for (size_t i = 0; i < pieces.size(); ++i) {
        const auto [piece, size] = pieces[i];
        wrong += piece[0] != piece[size - 1];
    }
    EXPECT_EQ(wrong, 0U);
}

TEST(Text, GrowsIntoAStringOfPhps)
{
    const Call call;
    std::string expected;
    Text text;
    for (size_t size = 0; size < 3000; size += 7) {
        text.append(std::string(size, 'x'));
        text.append('y');
        text.append(2, 'z');
        expected.append(size, 'x') += "yzz";
    }
    EXPECT_EQ(text.view(), expected);
    const EngineString result = text.release();
    EXPECT_EQ(std::string_view(ZSTR_VAL(result.get()), ZSTR_LEN(result.get())), expected);
    EXPECT_EQ(ZSTR_VAL(result.get())[expected.size()], '\0');
    EXPECT_EQ(GC_REFCOUNT(result.get()), 1U);
    EXPECT_TRUE(text.empty());
    // What it held before is left alone.
    Text kept("kept");
    kept.append(" and grown");
    EXPECT_EQ(kept.view(), "kept and grown");
    EXPECT_EQ(ZSTR_LEN(Text().release().get()), 0U);
}

TEST(EngineCall, EndsWhenTheTimeIsUpAndNotForOtherInterrupts)
{
    if (!is_zend_mm()) {
        GTEST_SKIP() << "PHP leaves a fatal error's message to its own allocator.";
    }
    EngineCall call;
    zend_atomic_bool_store(&EG(vm_interrupt), true);
    EXPECT_NO_THROW(call.checkTime());
    zend_atomic_bool_store(&EG(timed_out), true);
    EXPECT_THROW(call.checkTime(), CallAbandoned);
    EXPECT_TRUE(call.fatal());
    zend_atomic_bool_store(&EG(vm_interrupt), false);
    forgetFatalError();
}

TEST(Stack, KnowsItsLimitAlsoWherePhpDoesNotLook)
{
    void* const limit = EG(stack_limit);
    EXPECT_TRUE(Stack::hasRoom(Stack::CALL));
    EXPECT_TRUE(Stack::hasRoomToOpen(std::string(4000, '/')));
    EG(stack_limit) = __builtin_frame_address(0);
    EXPECT_FALSE(Stack::hasRoom(Stack::LEVEL));
    EXPECT_FALSE(Stack::hasRoomToOpen("name"));
    // Room for a plain name, but not for the levels of a long one.
    EG(stack_limit) = static_cast<char*>(__builtin_frame_address(0)) - 200 * 1024;
    EXPECT_TRUE(Stack::hasRoomToOpen("folder/name"));
    EXPECT_FALSE(Stack::hasRoomToOpen(std::string(1000, '/')));
    EG(stack_limit) = nullptr;
    EXPECT_TRUE(Stack::hasRoom(Stack::CALL));
    EXPECT_FALSE(Stack::hasRoom(EG(call_stack).max_size));
    EXPECT_FALSE(Stack::reserveIsUsed());
    EG(stack_limit) = limit;
}

TEST(HeldTable, IsWhatItWasWhenItWasTaken)
{
    EngineCall call;
    // What is iterated, how user code changes it meanwhile, and what it holds. A
    // DateInterval is of a class that rebuilds its table.
    const struct {
        const char *value, *change;
        zend_long first;
    } cases[] = {
        {"[1, 2]", "$held[] = 3; $held[0] = 5;", 1},
        {"(object) ['a' => 1, 'b' => 2]", "$held->c = 3; unset($held->a);", 1},
        {"new DateInterval('P7Y')", "$held->y = 5; $held->m = null; (array) $held;", 7},
    };
    for (const auto& [value, change, first] : cases) {
        runPhp("$held = " + std::string(value) + ";");
        zval* variable = zend_hash_str_find_ind(&EG(symbol_table), "held", 4);
        {
            const HeldTable held(variable);
            ASSERT_NE(held.table(), nullptr) << value;
            const uint32_t count = zend_hash_num_elements(held.table());
            runPhp(change);
            runPhp("$held = null;");
            HashPosition position;
            zend_hash_internal_pointer_reset_ex(held.table(), &position);
            const zval* element = zend_hash_get_current_data_ex(held.table(), &position);
            ASSERT_NE(element, nullptr) << value;
            EXPECT_EQ(Z_LVAL_P(element), first) << value;
            EXPECT_EQ(zend_hash_num_elements(held.table()), count) << value;
        }
    }
    for (const char* value : {"null", "5", "'text'"}) {
        EXPECT_EQ(HeldTable(Value(value).get()).table(), nullptr) << value;
    }
    EXPECT_FALSE(call.fatal());
}

TEST(EngineString, OwnsOneReference)
{
    zend_string* text = zend_string_init("a\0b", 3, false);
    {
        EngineString first(zend_string_copy(text)), second(std::move(first)), third;
        third = std::move(second);
        EXPECT_EQ(GC_REFCOUNT(text), 2U);
        EXPECT_EQ(third.text(), "a");
    }
    EXPECT_EQ(GC_REFCOUNT(text), 1U);
    zend_string_release(text);
}
