<?php

/** @generate-class-entries */

/**
 * Renders a template with user data.
 *
 * A template is text with tags in braces:
 *
 *     {name}  {name other::name 'default'}        the first value that there is, as it is
 *     {htmlspecialchars name}                     one value, escaped; also htmlentities, rawurlencode, addslashes
 *     {optional name}…{/optional}                 shown when the value is true; {!optional name} when not
 *     {optional name 'text'}…{/optional}          shown when the value equals the text
 *     {dynamic row,rows}…{row::*::name}…{/dynamic}  once for each element; rdynamic … /rdynamic in reverse
 *     {include file.tpl}                          another template at this place
 *
 * "{{" and "}}" print one brace, and a "{" before a blank is text. Keys are joined with "::";
 * inside a section, "row::*" is the current element and "row::[*]" its key.
 *
 * Nothing is escaped unless a tag says so: use {htmlspecialchars …} for what goes into HTML.
 * Missing values are no error. A template that is malformed, or cannot be opened, raises an
 * E_WARNING that says what is wrong, and the result is null.
 *
 *     template('page.tpl', ['title' => 'Hello', 'rows' => $rows]);
 *     template('Dear {name},', ['name' => 'Ann'], true);   // "Dear Ann,"
 *
 * @param string $fileName The template's file or stream URL, looked for in the include path too;
 *     with $string_mode the template itself.
 * @param mixed[] $userData What the template's variables name.
 * @param bool $string_mode Whether $fileName is the template itself. Files that it includes are
 *     files all the same.
 *
 * @return string|null The text, "" for an empty template; null after a warning.
 */
function template(string $fileName, array $userData, bool $string_mode = false): ?string {}
