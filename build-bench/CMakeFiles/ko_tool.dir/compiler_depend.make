# Empty compiler generated dependencies file for ko_tool.
# This may be replaced when dependencies are built.
