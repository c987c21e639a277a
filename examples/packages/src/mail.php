<?php
declare(strict_types=1);

/*
 * The mail to a maintainer. It is a template in a string, which template() takes with its third argument true.
 *
 * In the "To" line, addslashes makes a quoted string of a name. Nothing else is escaped, since plain text has nothing
 * to escape, and so variable tags can name alternatives: the first that is there is written, else the text in quotes.
 * Near the end, a tag with nothing but a text in quotes keeps the blank after "--" in sight.
 */
const MAIL = <<<'TEMPLATE'
From: "Package report" <root@localhost>
To: {optional to::address}{optional to::name}"{addslashes to::name}" {/optional}<{to::address}>{/optional}{!optional to::address}undisclosed-recipients:;{/optional}
Subject: {count} package{!optional count 1}s{/optional} that you maintain
Date: {date}
MIME-Version: 1.0
Content-Type: text/plain; charset=UTF-8
Content-Transfer-Encoding: 8bit

Dear {to::name to::address 'maintainer'},

{optional count 1}one package of yours is{/optional}{!optional count 1}{count} packages of yours are{/optional} on this machine{optional size}, {size} in all{/optional}:

{dynamic section,sections}Section {section::*::name}

{dynamic package,section::*::packages}{package::[*]}. {package::*::name} {package::*::version '(no version)'}
   {package::*::summary}
   {package::*::size 'no size'}{optional package::*::neededBy}, needed by {package::*::neededBy} of the packages here{/optional}

{/dynamic}{/dynamic}Thank you for your work.

--{' '}
This mail was rendered from the package database, and sent to nobody.

TEMPLATE;
