// Includes: another file is analysed by a template of its own, which fills the
// includer's list of blocks. Nothing of the include itself reaches the tree.
#include <algorithm>
#include <stdexcept>

#include "template/error.h"
#include "template/template.h"

namespace {

constexpr std::string_view BAD_PARAMETER = "Include block bad parameter '";
constexpr std::string_view NOT_OPENED = "Could not open file";

// Moves the chain of file names into the included file's template, before its own
// name, and back when that is done, well or not: in string mode the chain holds
// the whole template's text, so copying it at each include would cost the square
// of it.
class LentFileNames {
public:
    LentFileNames(std::vector<std::string>& lender, std::vector<std::string>& borrower)
        : lender_(lender), borrower_(borrower)
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
    std::vector<std::string>& lender_;
    std::vector<std::string>& borrower_;
};

}

void Template::analyzeIncludeBlock(Blocks& blocks, PendingText& pendingText,
    std::string_view content) const
{
    storeTextBlock(blocks, pendingText);
    std::string fileName = includedFile(content);
    if (std::find(fileNames.begin(), fileNames.end(), fileName) != fileNames.end()) {
        throwError(BAD_PARAMETER, content, "': circle is detected in ", currentFile());
    }
    try {
        analyzeIncludedFile(blocks, pendingText, std::move(fileName));
    } catch (const std::exception& failure) {
        // A file that is not there includes nothing. Any other fault is one.
        if (!std::string_view(failure.what()).starts_with(NOT_OPENED)) {
            throw;
        }
        call().leaveIfAbandoned();
    }
}

// The name that the user data holds, if it is a string; else the tag's own text.
std::string Template::includedFile(std::string_view content) const
{
    const ReferenceText reference = parseReference(content);
    if (reference.kind != VariableKind::ROOT_VALUE) {
        throwError(BAD_PARAMETER, content, "': asterisk in filename is forbidden in ",
            currentFile());
    }
    const zval* value = findRootValue(reference.path);
    if (value != nullptr && Z_TYPE_P(value) == IS_STRING) {
        return Z_STRVAL_P(value);
    }
    if (content.empty()) {
        throwError("Include block bad parameter: no parameter found in ", currentFile());
    }
    return std::string(content);
}

void Template::analyzeIncludedFile(Blocks& blocks, PendingText& pendingText,
    std::string fileName) const
{
    {
        Template included(std::move(fileName), phpInterface, false);
        const LentFileNames lent(fileNames, included.fileNames);
        included.reserveText(*pendingText);
        included._analyzeTemplate(blocks, pendingText, Block::VARIABLE);
    }
    // Closing a stream can run user code too.
    call().leaveIfAbandoned();
}
