// Includes: another file is analysed by a template of its own, which fills the
// includer's list of blocks. Nothing of the include itself reaches the tree.
#include <algorithm>

#include "template/error.h"
#include "template/template.h"

namespace {

constexpr std::string_view BAD_PARAMETER = "Include block bad parameter '";

// Moves the chain of file names into the included file's template, before its own
// name, and back when that is done, well or not: in string mode the chain holds
// the whole template's text, so copying it at each include would cost the square
// of it.
class LentFileNames final {
public:
    LentFileNames(LastingVector<String>& lender, LastingVector<String>& borrower)
        : lender_(lender),
          borrower_(borrower)
    {
        lender_.push_back(std::move(borrower_.back()));
        borrower_.swap(lender_);
    }
    LentFileNames(const LentFileNames&) = delete;
    LentFileNames& operator=(const LentFileNames&) = delete;
    ~LentFileNames()
    {
        lender_.swap(borrower_);
        lender_.pop_back();
    }

private:
    LastingVector<String>& lender_;
    LastingVector<String>& borrower_;
};

}

void Template::analyzeIncludeBlock(
    Blocks& blocks, PendingText& pendingText, std::string_view content) const
{
    storeTextBlock(blocks, pendingText);
    String fileName = includedFile(content);
    if (std::find(fileNames.begin(), fileNames.end(), fileName) != fileNames.end()) {
        throwError(BAD_PARAMETER, content, "': circle is detected in ", currentFile());
    }
    try {
        Template included(std::move(fileName), phpInterface, false);
        const LentFileNames lent(fileNames, included.fileNames);
        included.reserveText(*pendingText);
        included._analyzeTemplate(blocks, pendingText, Block::VARIABLE);
    } catch (const FileNotOpened&) {
        // A file that is not there includes nothing. Any other fault is one.
    } catch (const NestingTooDeep&) {
        throwTooDeep(currentFile());
    }
    // Opening and closing a stream can run user code too.
    EngineCall::current().leaveIfAbandoned();
}

// The name that the user data holds, if it is a string; else the tag's own text.
String Template::includedFile(std::string_view content) const
{
    const ReferenceText reference = parseReference(content, currentFile());
    if (reference.kind != VariableKind::ROOT_VALUE) {
        throwError(
            BAD_PARAMETER, content, "': asterisk in filename is forbidden in ", currentFile());
    }
    const zval* value = findRootValue(reference.path);
    if (value != nullptr && Z_TYPE_P(value) == IS_STRING) {
        return Z_STRVAL_P(value);
    }
    if (content.empty()) {
        throwError("Include block bad parameter: no parameter found in ", currentFile());
    }
    return String(content);
}
