<?php
/** The messages of the extension, as its sources have them: each must be shown in the documents. */

declare(strict_types=1);

/** @return list<string> the constant part that tells one message from another */
function messages_of_the_extension(): array
{
    $messages = [];
    foreach (glob('src/*/*.cpp') as $source) {
        preg_match_all('/"((?:[^"\\\\]|\\\\.)* in |Could not open file |Error while [^"]*)"/', file_get_contents($source), $matches);
        array_push($messages, ...array_map(stripcslashes(...), $matches[1]));
    }
    return array_values(array_unique($messages)) ?: ['no source has a message'];
}

/** Whether an example of a document brings a message up. */
function is_shown(string $message, string $document): bool
{
    foreach (examples_in(file_get_contents($document)) as $example) {
        if ($example->warning !== null && str_contains($example->warning, $message)) {
            return true;
        }
    }
    return false;
}
