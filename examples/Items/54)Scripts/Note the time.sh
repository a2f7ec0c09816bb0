#!/bin/sh
# Adds a line with the date and time to a file in the home folder.
date '+%Y-%m-%d %H:%M' >>"$HOME/times.txt"
