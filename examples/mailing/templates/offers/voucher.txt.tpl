The next book is cheaper by a tenth: BOOK-{number}.
