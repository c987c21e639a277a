// The engine's side of a call: its ways out, its limits, and what is held.
#include "module/engine.h"

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
    }), "abandoned");
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
    EXPECT_THROW(call.run([] { zend_eval_string("throw new Exception;", nullptr, "test"); }),
        CallAbandoned);
    EXPECT_FALSE(call.fatal());
    zend_clear_exception();
    EXPECT_NO_THROW(call.run([] {}));
}

TEST(EngineCall, ChargesTextsAsTheyGrow)
{
    EngineCall call;
    std::string text, expected;
    for (size_t size = 0; size < 3000; size += 7) {
        call.append(text, std::string(size, 'x'));
        expected.append(size, 'x');
        ASSERT_GE(call.charged() + 16, text.capacity());
        ASSERT_LE(text.capacity(), std::max<size_t>(256, 2 * expected.size() + 16));
    }
    EXPECT_EQ(text, expected);
    // One text costs what it holds, not what it has held.
    EXPECT_LE(call.charged(), text.capacity() + 16);
}

TEST(EngineCall, CountsWhatIsChargedAgainstTheMemoryLimit)
{
    if (!is_zend_mm()) {
        GTEST_SKIP() << "PHP counts no memory without its own allocator.";
    }
    constexpr size_t MEGABYTE = 1024 * 1024;
    const size_t before = zend_memory_usage(false);
    {
        EngineCall call;
        call.charge(100 * 1024);
        EXPECT_EQ(zend_memory_usage(false), before);
        call.charge(21 * MEGABYTE);
        EXPECT_GE(zend_memory_usage(false), before + 20 * MEGABYTE);
        const size_t charged = call.charged();
        for (int i = 0; i < 30 * 1024; ++i) {
            call.charge(1024);
        }
        EXPECT_GE(zend_memory_usage(false), before + 50 * MEGABYTE);
        call.dischargeTo(charged);
        EXPECT_EQ(call.charged(), charged);
        EXPECT_LT(zend_memory_usage(false), before + 23 * MEGABYTE);
    }
    EXPECT_LT(zend_memory_usage(false), before + MEGABYTE);
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

TEST(NestingLevel, CountsWhereTheEngineKnowsNoStackLimit)
{
    void* const limit = std::exchange(EG(stack_limit), nullptr);
    std::vector<std::unique_ptr<NestingLevel>> levels;
    do {
        levels.push_back(std::make_unique<NestingLevel>());
    } while (!levels.back()->tooDeep() && levels.size() < 100000);
    EG(stack_limit) = limit;
    EXPECT_EQ(levels.size(), 1025U);
    EXPECT_FALSE(NestingLevel().tooDeep());
    EG(stack_limit) = __builtin_frame_address(0);
    EXPECT_TRUE(NestingLevel().tooDeep());
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
            const HeldTable held(call, variable);
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
        EXPECT_EQ(HeldTable(call, Value(value).get()).table(), nullptr) << value;
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
