Subject: Your order: {book::title}

Dear {name 'reader'},

thank you for ordering "{book::title}"{optional book::author} by {book::author}{/optional}.
{optional book::price}It costs {book::price}, and leaves us tomorrow.
{/optional}{!optional book::price}It is out of print. We look for a copy, and will write to you.
{/optional}
--{' '}
The bookshop
