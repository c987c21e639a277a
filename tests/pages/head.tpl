<!doctype html>
<html lang="{lang 'en'}"><title>{htmlspecialchars title}</title>
