<!DOCTYPE html>
<title>Books, release 1</title>
