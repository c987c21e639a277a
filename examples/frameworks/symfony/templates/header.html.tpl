<!DOCTYPE html>
<title>Books</title>
