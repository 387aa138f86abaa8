# Empty dependencies file for bench_catalog.
# This may be replaced when dependencies are built.
