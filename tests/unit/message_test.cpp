// Messages as the engine's format string: nothing in them may fetch an argument.
#include "module/message.h"

#include "fixture.h"

namespace {

// Something that the formatter may take for any argument. As a PHP value it is
// an integer of its own: a string's hash lies where a value's type does, and its
// count where a value's integer does.
class AnyArgument {
public:
    explicit AnyArgument(const char* text)
        : text_(zend_string_init(text, strlen(text), false)),
          count_(strlen(text))
    {
        ZSTR_H(text_.get()) = IS_LONG;
        GC_SET_REFCOUNT(text_.get(), count_);
    }
    ~AnyArgument() { GC_SET_REFCOUNT(text_.get(), 1); }
    bool unchanged() const { return GC_REFCOUNT(text_.get()) == count_; }

    std::string format(const std::string& format, double number) const
    {
        zend_string* p = text_.get();
        const EngineString result(
            strpprintf(0, format.c_str(), p, p, p, p, number, number, number));
        return ZSTR_VAL(result.get());
    }

private:
    EngineString text_;
    uint32_t count_;
};

std::string disarmedText(const std::string& message)
{
    return ZSTR_VAL(disarmFormat(message).get());
}

}

TEST(DisarmFormat, FetchesNoArgumentForAnyConversion)
{
    const Call call;
    const AnyArgument one("one"), two("second");
    for (const std::string flags : {"", "-", "+#", " 0"}) {
        for (const std::string width : {"", "1", "99", "100", "*", "4294967297", "99999999999"}) {
            for (const std::string precision : {"", ".", ".7", ".*", ".999999999", ".4294967295"}) {
                for (const std::string modifier : {"", "L", "l", "ll", "z", "j", "t", "h", "hh"}) {
                    for (int byte = 1; byte < 256; ++byte) {
                        // The bytes behind it are of the kind that an error would take along.
                        const std::string message = "%" + flags + width + precision + modifier
                            + static_cast<char>(byte) + "n s%";
                        const std::string disarmed = disarmedText(message);
                        ASSERT_EQ(one.format(disarmed, 1.5), two.format(disarmed, -7)) << message;
                        ASSERT_TRUE(one.unchanged() && two.unchanged()) << message;
                    }
                }
            }
        }
    }
}

TEST(DisarmFormat, BoundsThePaddingOfAWholeMessage)
{
    const Call call;
    std::string message;
    for (int i = 0; i < 5000; ++i) {
        message += "%99%";
    }
    EXPECT_LT(AnyArgument("?").format(disarmedText(message), 0).size(), 64 * 1024 + message.size());
}
