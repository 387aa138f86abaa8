# Empty compiler generated dependencies file for ko.
# This may be replaced when dependencies are built.
