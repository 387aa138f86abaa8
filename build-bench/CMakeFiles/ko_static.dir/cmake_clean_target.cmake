file(REMOVE_RECURSE
  "libko_static.a"
)
