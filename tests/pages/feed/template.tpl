<?xml version="1.0" encoding="UTF-8"?>
<rss version="2.0"><channel><title>{htmlspecialchars feed::title}</title>
{rdynamic item,feed::items}<item><title>{htmlspecialchars item::*::title}</title><guid>{rawurlencode item::*::guid}</guid>{dynamic item::*::tags}<category>{htmlspecialchars *}</category>{/dynamic}{optional item::*::body}<description>{htmlspecialchars item::*::body}</description>{/optional}</item>
{/rdynamic}</channel></rss>
