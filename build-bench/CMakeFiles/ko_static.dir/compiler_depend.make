# Empty compiler generated dependencies file for ko_static.
# This may be replaced when dependencies are built.
