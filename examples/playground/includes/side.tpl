<aside>Tea is served at four.</aside>
